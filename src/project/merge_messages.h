// The texts of source merging, in one place.
#pragma once

namespace MergeMessage {

constexpr char outsideProject[] =
    "源文件“%1”位于工程文件夹之外，未读取。确实需要时请以绝对路径将其加入工程。";
constexpr char fileTooLarge[] = "源文件过大：%1";
constexpr char alreadyTooLarge[] = "合并源码已超过本 IDE 上限（约 %1 "
                                   "千万字符），请删减。若工程体量正常仍提示，请改用 64 位 "
                                   "VorelDesk。";
constexpr char sourceTooLarge[] = "合并源码将超过 IDE 上限（约 %1 "
                                  "千万字符），已中止。请拆分工程或使用 64 位 VorelDesk。";
constexpr char classFileTooLarge[] =
    "合并源码将超过 IDE 上限，已中止。请删减 .vpp 或使用 64 位 VorelDesk。";
constexpr char typeFileTooLarge[] =
    "合并源码将超过 IDE 上限，已中止。请删减 .vt 或使用 64 位 VorelDesk。";

} // namespace MergeMessage
