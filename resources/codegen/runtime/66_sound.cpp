// Sounds: files and beeps.
#include "66_sound.h"

#include <mmsystem.h>

#include <algorithm>

namespace vl_sound {
namespace {

bool command(const std::wstring &text)
{
    return mciSendStringW(text.c_str(), NULL, 0, NULL) == 0;
}

// Each thread has its own devices, so that one name is enough.
const wchar_t *kName = L"vl_sound_player";

void closePlayer()
{
    command(std::wstring(L"close ") + kName);
}

bool openPlayer(const std::wstring &path)
{
    const std::wstring open = L"open \"" + path + L"\"";
    const std::wstring alias = std::wstring(L" alias ") + kName;
    // The first form takes the player registered for the file's ending.
    return command(open + alias) || command(open + L" type mpegvideo" + alias);
}

bool playByPlayer(const std::wstring &path, bool wait, bool loop)
{
    if (!openPlayer(path))
        return false;
    const std::wstring play = std::wstring(L"play ") + kName;
    if (command(play + (loop ? L" repeat" : wait ? L" wait" : L""))) {
        if (wait && !loop)
            closePlayer();
        return true;
    }
    closePlayer();
    return false;
}

bool isWave(const std::wstring &path)
{
    return path.size() >= 4 && _wcsicmp(path.c_str() + path.size() - 4, L".wav") == 0;
}

} // namespace
} // namespace vl_sound

bool VL_PlaySound(const std::wstring &path, bool wait, bool loop)
{
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (path.empty() || path.find_first_of(std::wstring(L"\"\0", 2)) != std::wstring::npos ||
        attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY))
        return false;
    VL_StopSound();
    if (!vl_sound::isWave(path))
        return vl_sound::playByPlayer(path, wait, loop);
    DWORD flags = SND_FILENAME | SND_NODEFAULT;
    flags |= loop ? SND_ASYNC | SND_LOOP : wait ? SND_SYNC : SND_ASYNC;
    return PlaySoundW(path.c_str(), NULL, flags) != FALSE;
}

void VL_StopSound()
{
    PlaySoundW(NULL, NULL, 0);
    vl_sound::closePlayer();
}

void VL_Beep(intptr_t frequency, intptr_t duration)
{
    const intptr_t tone = std::max<intptr_t>(37, std::min<intptr_t>(frequency, 32767));
    const intptr_t time = std::min<intptr_t>(duration, 60000);
    if (time > 0)
        Beep((DWORD)tone, (DWORD)time);
}
