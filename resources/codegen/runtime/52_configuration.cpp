// Settings in INI files.
#include "52_configuration.h"
#include "39_encodings.h"
#include "40_files.h"

#include <set>

namespace vl_configuration {
namespace {

const intptr_t kUtf8 = 65001;
const intptr_t kGbk = 936;
const intptr_t kUtf16Low = 1200;
const intptr_t kUtf16High = 1201;
const size_t kNone = (size_t)-1;

// Keeps one thread from overwriting what another has just written to the same file.
SRWLOCK g_writing = SRWLOCK_INIT;

class WriteLock
{
public:
    WriteLock() { AcquireSRWLockExclusive(&g_writing); }
    ~WriteLock() { ReleaseSRWLockExclusive(&g_writing); }
    WriteLock(const WriteLock &) = delete;
    WriteLock &operator=(const WriteLock &) = delete;
};

std::wstring trimmed(const std::wstring &text)
{
    const wchar_t *blanks = L" \t\r\n\v\f\u3000\uFEFF";
    const size_t begin = text.find_first_not_of(blanks);
    if (begin == std::wstring::npos)
        return std::wstring();
    return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

bool sameName(const std::wstring &a, const std::wstring &b)
{
    return a.size() == b.size() && CompareStringOrdinal(a.c_str(), (int)a.size(), b.c_str(),
                                                        (int)b.size(), TRUE) == CSTR_EQUAL;
}

std::wstring folded(std::wstring name)
{
    if (!name.empty())
        CharUpperBuffW(&name[0], (DWORD)name.size());
    return name;
}

bool hasQuotes(const std::wstring &value)
{
    return value.size() >= 2 && value.front() == value.back() &&
           (value.front() == L'"' || value.front() == L'\'');
}

// A value that would lose its blanks or quotes when it is read gets quotes of its own.
std::wstring writtenValue(const std::wstring &value)
{
    return trimmed(value) != value || hasQuotes(value) ? L"\"" + value + L"\"" : value;
}

// A line of the file: its bytes with the line end, and what stands in it. Lines that are not
// changed are written back as the bytes they were.
struct Line
{
    enum Kind
    {
        Other,
        Header,
        Setting
    };

    std::string bytes;
    std::wstring text;
    Kind kind = Other;
    std::wstring name;
};

void classify(Line &line)
{
    const std::wstring text = trimmed(line.text);
    line.kind = Line::Other;
    line.name.clear();
    if (text.empty() || text[0] == L';' || text[0] == L'#')
        return;
    if (text[0] == L'[') {
        const size_t end = text.find(L']');
        if (end == std::wstring::npos)
            return;
        line.kind = Line::Header;
        line.name = trimmed(text.substr(1, end - 1));
        return;
    }
    const size_t equals = text.find(L'=');
    if (equals == std::wstring::npos || equals == 0)
        return;
    line.kind = Line::Setting;
    line.name = trimmed(text.substr(0, equals));
}

std::wstring valueOf(const Line &line)
{
    const std::wstring value = trimmed(line.text.substr(line.text.find(L'=') + 1));
    return hasQuotes(value) ? value.substr(1, value.size() - 2) : value;
}

class Document
{
public:
    // False when there is no such file; `readable` tells whether one may be made in its place.
    bool load(const std::wstring &path, bool *readable = nullptr);
    bool save(const std::wstring &path) const;

    // Index of the line that sets the key, or kNone.
    size_t find(const std::wstring &section, const std::wstring &key) const;
    const Line &line(size_t index) const { return m_lines[index]; }
    bool set(const std::wstring &section, const std::wstring &key, const std::wstring &value);
    bool remove(const std::wstring &section, const std::wstring *key);
    VL_Array names(const std::wstring *section) const;

private:
    bool isWide() const { return m_encoding == kUtf16Low || m_encoding == kUtf16High; }
    wchar_t unitAt(const std::string &bytes, size_t at) const;
    void findEncoding(const std::string &bytes);
    size_t lineEnd(const std::string &bytes, size_t begin, size_t &next) const;
    Line newLine(const std::wstring &text);
    void becomeUtf8();
    size_t placeFor(const std::wstring &section) const;
    void endLastLine();
    void addSection(const std::wstring &section);

    intptr_t m_encoding = kUtf8;
    std::string m_mark;
    std::wstring m_newLine = L"\r\n";
    std::vector<Line> m_lines;
};

void Document::findEncoding(const std::string &bytes)
{
    m_encoding = VL_IsValidUtf8(bytes.data(), bytes.size()) ? kUtf8 : kGbk;
    const struct
    {
        const char *mark;
        size_t length;
        intptr_t encoding;
    } marks[] = {
        {"\xEF\xBB\xBF", 3, kUtf8}, {"\xFF\xFE", 2, kUtf16Low}, {"\xFE\xFF", 2, kUtf16High}};
    for (const auto &row : marks) {
        if (bytes.compare(0, row.length, row.mark, row.length) != 0)
            continue;
        m_mark.assign(row.mark, row.length);
        m_encoding = row.encoding;
        return;
    }
}

// A byte that is no ASCII character is never taken for a line end.
wchar_t Document::unitAt(const std::string &bytes, size_t at) const
{
    const unsigned first = (unsigned char)bytes[at];
    if (!isWide())
        return (wchar_t)first;
    const unsigned second = at + 1 < bytes.size() ? (unsigned char)bytes[at + 1] : 0u;
    return (wchar_t)(m_encoding == kUtf16Low ? second << 8 | first : first << 8 | second);
}

// Where the text of the line ends, and where the next line begins.
size_t Document::lineEnd(const std::string &bytes, size_t begin, size_t &next) const
{
    const size_t step = isWide() ? 2 : 1;
    size_t end = begin;
    while (end < bytes.size() && unitAt(bytes, end) != L'\n' && unitAt(bytes, end) != L'\r')
        end += step;
    end = end < bytes.size() ? end : bytes.size();
    next = end;
    if (next < bytes.size() && unitAt(bytes, next) == L'\r')
        next += step;
    if (next < bytes.size() && unitAt(bytes, next) == L'\n')
        next += step;
    next = next < bytes.size() ? next : bytes.size();
    return end;
}

bool Document::load(const std::wstring &path, bool *readable)
{
    std::string bytes;
    const bool loaded = VL_LoadFileBytes(path, bytes);
    // A file that is there but cannot be read must not be replaced by a new one.
    if (readable)
        *readable = loaded || (!VL_FileExists(path) && !VL_DirExists(path));
    if (!loaded)
        return false;
    findEncoding(bytes);
    for (size_t begin = m_mark.size(); begin < bytes.size();) {
        size_t next = 0;
        const size_t end = lineEnd(bytes, begin, next);
        Line line;
        line.bytes = bytes.substr(begin, next - begin);
        line.text = VL_DecodeText(bytes.data() + begin, end - begin, m_encoding);
        classify(line);
        if (m_lines.empty() && next > end)
            m_newLine = VL_DecodeText(bytes.data() + end, next - end, m_encoding);
        m_lines.push_back(std::move(line));
        begin = next;
    }
    return true;
}

bool Document::save(const std::wstring &path) const
{
    std::string bytes = m_mark;
    for (const Line &line : m_lines)
        bytes += line.bytes;
    return VL_SaveFileBytes(path, bytes.data(), bytes.size());
}

size_t Document::find(const std::wstring &section, const std::wstring &key) const
{
    bool inside = section.empty();
    for (size_t i = 0; i < m_lines.size(); ++i) {
        const Line &line = m_lines[i];
        if (line.kind == Line::Header)
            inside = sameName(line.name, section);
        else if (inside && line.kind == Line::Setting && sameName(line.name, key))
            return i;
    }
    return kNone;
}

// A character that the file's code page lacks makes the whole file UTF-8.
void Document::becomeUtf8()
{
    m_encoding = kUtf8;
    for (Line &line : m_lines) {
        const size_t last = line.bytes.find_last_not_of("\r\n");
        const std::string ending = line.bytes.substr(last == std::string::npos ? 0 : last + 1);
        line.bytes = VL_EncodeText(line.text, kUtf8) + ending;
    }
}

Line Document::newLine(const std::wstring &text)
{
    Line line;
    line.text = text;
    const std::string bytes = VL_EncodeText(text, m_encoding);
    if (m_encoding == kGbk && VL_DecodeText(bytes.data(), bytes.size(), m_encoding) != text)
        becomeUtf8();
    line.bytes = VL_EncodeText(text + m_newLine, m_encoding);
    classify(line);
    return line;
}

// Behind the last line of the section's first occurrence that is not blank; kNone without one.
size_t Document::placeFor(const std::wstring &section) const
{
    size_t place = section.empty() ? 0 : kNone;
    bool inside = section.empty();
    for (size_t i = 0; i < m_lines.size(); ++i) {
        if (m_lines[i].kind == Line::Header) {
            if (place != kNone)
                return place;
            inside = sameName(m_lines[i].name, section);
        }
        if (inside && !trimmed(m_lines[i].text).empty())
            place = i + 1;
    }
    return place;
}

void Document::endLastLine()
{
    if (m_lines.empty())
        return;
    Line &last = m_lines.back();
    const size_t step = isWide() ? 2 : 1;
    const wchar_t unit =
        last.bytes.size() < step ? L'\n' : unitAt(last.bytes, last.bytes.size() - step);
    if (unit != L'\n' && unit != L'\r')
        last.bytes += VL_EncodeText(m_newLine, m_encoding);
}

void Document::addSection(const std::wstring &section)
{
    endLastLine();
    if (!m_lines.empty() && !trimmed(m_lines.back().text).empty())
        m_lines.push_back(newLine(std::wstring()));
    m_lines.push_back(newLine(L"[" + section + L"]"));
}

// False when nothing had to be changed.
bool Document::set(const std::wstring &section, const std::wstring &key, const std::wstring &value)
{
    const size_t at = find(section, key);
    if (at == kNone) {
        size_t place = placeFor(section);
        if (place == kNone) {
            addSection(section);
            place = m_lines.size();
        }
        if (place == m_lines.size())
            endLastLine();
        // Made before the insertion, since it may change the lines that are there.
        Line line = newLine(key + L"=" + writtenValue(value));
        m_lines.insert(m_lines.begin() + (ptrdiff_t)place, std::move(line));
        return true;
    }
    if (valueOf(m_lines[at]) == value)
        return false;
    const std::wstring text = m_lines[at].text;
    size_t start = text.find(L'=') + 1;
    while (start < text.size() && (text[start] == L' ' || text[start] == L'\t'))
        ++start;
    Line line = newLine(text.substr(0, start) + writtenValue(value));
    m_lines[at] = std::move(line);
    return true;
}

// Removes a key, or without one the whole section, wherever the file repeats it.
bool Document::remove(const std::wstring &section, const std::wstring *key)
{
    std::vector<Line> kept;
    bool inside = section.empty();
    for (Line &line : m_lines) {
        if (line.kind == Line::Header)
            inside = sameName(line.name, section);
        const bool setting = line.kind == Line::Setting;
        // What stands before the first section may be a comment on the whole file.
        const bool gone =
            inside && (key ? setting && sameName(line.name, *key) : setting || !section.empty());
        if (!gone)
            kept.push_back(std::move(line));
    }
    const bool removed = kept.size() < m_lines.size();
    m_lines.swap(kept);
    return removed;
}

// The keys of a section; without one the sections.
VL_Array Document::names(const std::wstring *section) const
{
    VL_Array result;
    std::set<std::wstring> known;
    bool inside = section && section->empty();
    for (const Line &line : m_lines) {
        if (line.kind == Line::Header && section)
            inside = sameName(line.name, *section);
        const bool wanted = section ? inside && line.kind == Line::Setting
                                    : line.kind == Line::Header && !line.name.empty();
        if (wanted && known.insert(folded(line.name)).second)
            result.push_back(VL_Any(line.name));
    }
    return result;
}

bool fitsLine(const std::wstring &text)
{
    return text.find_first_of(std::wstring(L"\r\n\0", 3)) == std::wstring::npos;
}

bool isSectionName(const std::wstring &name)
{
    return fitsLine(name) && name.find(L']') == std::wstring::npos;
}

bool isKeyName(const std::wstring &name)
{
    return !name.empty() && fitsLine(name) && name.find(L'=') == std::wstring::npos &&
           std::wstring(L";#[").find(name[0]) == std::wstring::npos;
}

bool removeFrom(const std::wstring &path, const std::wstring &section, const std::wstring *key)
{
    const WriteLock lock;
    Document document;
    return document.load(path) && document.remove(section, key) && document.save(path);
}

} // namespace
} // namespace vl_configuration

std::wstring VL_ReadIni(const std::wstring &path, const std::wstring &section,
                        const std::wstring &key, const std::wstring &fallback)
{
    vl_configuration::Document document;
    if (!document.load(path))
        return fallback;
    const size_t at =
        document.find(vl_configuration::trimmed(section), vl_configuration::trimmed(key));
    return at == vl_configuration::kNone ? fallback : vl_configuration::valueOf(document.line(at));
}

bool VL_WriteIni(const std::wstring &path, const std::wstring &section, const std::wstring &key,
                 const VL_Any &value)
{
    const std::wstring sectionName = vl_configuration::trimmed(section);
    const std::wstring keyName = vl_configuration::trimmed(key);
    const std::wstring text = value.toStr();
    if (!vl_configuration::isSectionName(sectionName) || !vl_configuration::isKeyName(keyName) ||
        !vl_configuration::fitsLine(text))
        return false;
    const vl_configuration::WriteLock lock;
    vl_configuration::Document document;
    bool writable = false;
    if (!document.load(path, &writable) && !writable)
        return false;
    return !document.set(sectionName, keyName, text) || document.save(path);
}

bool VL_DeleteIniKey(const std::wstring &path, const std::wstring &section, const std::wstring &key)
{
    const std::wstring name = vl_configuration::trimmed(key);
    return vl_configuration::removeFrom(path, vl_configuration::trimmed(section), &name);
}

bool VL_DeleteIniSection(const std::wstring &path, const std::wstring &section)
{
    return vl_configuration::removeFrom(path, vl_configuration::trimmed(section), nullptr);
}

VL_Array VL_GetIniSectionList(const std::wstring &path)
{
    vl_configuration::Document document;
    document.load(path);
    return document.names(nullptr);
}

VL_Array VL_GetIniKeyList(const std::wstring &path, const std::wstring &section)
{
    vl_configuration::Document document;
    document.load(path);
    const std::wstring name = vl_configuration::trimmed(section);
    return document.names(&name);
}

bool VL_IniKeyExists(const std::wstring &path, const std::wstring &section, const std::wstring &key)
{
    vl_configuration::Document document;
    return document.load(path) &&
           document.find(vl_configuration::trimmed(section), vl_configuration::trimmed(key)) !=
               vl_configuration::kNone;
}
