// Cutting and joining text lists, balanced brackets.
#include "zor/text/text_lists.h"

#include <cwchar>
#include <string>
#include <string_view>

namespace ZOR {
namespace {

bool isDelimiter(wchar_t c, const wchar_t* delimiters) {
    return delimiters && c != 0 && std::wcschr(delimiters, c);
}

void appendToken(CZorArrayTempl<CZorString>& list, const wchar_t* begin, const wchar_t* end) {
    list.append(CZorString(std::wstring(begin, end).c_str()));
}

}  // namespace

bool strTok(CZorArrayTempl<CZorString>& list, const wchar_t* text, const wchar_t* delimiters,
            bool keepEmpty) {
    if (!text) return false;
    list.removeAll();
    const wchar_t* p = text;
    while (*p) {
        if (isDelimiter(*p, delimiters)) {
            if (keepEmpty) list.append(CZorString(L""));
            ++p;
            continue;
        }
        const wchar_t* start = p;
        while (*p && !isDelimiter(*p, delimiters)) ++p;
        appendToken(list, start, p);
        if (*p) ++p;  // the delimiter that ended the token
    }
    // A delimiter at the very end still ends a token: an empty one behind it.
    if (keepEmpty && p != text && isDelimiter(p[-1], delimiters)) list.append(CZorString(L""));
    return !list.isEmpty();
}

CZorArrayTempl<CZorString> explode(const wchar_t* text, const wchar_t* delimiters, bool keepEmpty) {
    CZorArrayTempl<CZorString> list;
    strTok(list, text, delimiters, keepEmpty);
    return list;
}

CZorString implode(const CZorArrayTempl<CZorString>& list, const wchar_t* delimiter) {
    if (list.isEmpty()) return CZorString();
    CZorString result(L"");
    result += list[0];
    for (std::uint32_t i = 1; i < list.len(); ++i) {
        result += delimiter;
        result += list[static_cast<int>(i)];
    }
    return result;
}

CZorString parse(const wchar_t* text, const wchar_t* open, const wchar_t* close,
                 bool withBrackets) {
    if (!text || !open || !close || !*open || !*close) return CZorString();
    const wchar_t* first = std::wcsstr(text, open);
    if (!first) return CZorString();
    const std::size_t openLength = std::wcslen(open);
    const std::size_t closeLength = std::wcslen(close);
    int depth = 0;
    for (const wchar_t* p = first; *p;) {
        if (std::wcsncmp(p, open, openLength) == 0) {
            ++depth;
            p += openLength;
        } else if (std::wcsncmp(p, close, closeLength) == 0) {
            p += closeLength;
            if (--depth == 0) {
                const wchar_t* begin = withBrackets ? first : first + openLength;
                const wchar_t* end = withBrackets ? p : p - closeLength;
                return CZorString(std::wstring(begin, end).c_str());
            }
        } else {
            ++p;
        }
    }
    return CZorString();
}

}  // namespace ZOR
