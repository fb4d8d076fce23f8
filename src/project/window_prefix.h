// References to the components of a window, completed with the window's name.
#pragma once

#include <QSet>
#include <QString>

#include <optional>

// What components are called by default, without their number.
const QSet<QString> &componentKinds();

// The text with `窗口.` in front of each reference `按钮1.标题`, `按钮1.取(…)` or
// `函数 按钮1.单击(` to a component of `window` by its default name. Strings, comments, names that
// the text itself declares and names behind a dot stay; so do all lines. With `components`, only
// these names are references. A window name that is no single word of the language changes nothing.
QString withWindowPrefix(const QString &text, const QString &window,
                         const std::optional<QSet<QString>> &components = std::nullopt);
