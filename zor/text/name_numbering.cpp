// Counting on the numbers in names, and names fit for files.
#include <algorithm>
#include <cstdint>
#include <cwchar>
#include <string>

#include "zor/text/text_lists.h"
#include "zor/text/text_result.h"

namespace ZOR {
namespace {

// The kind of a run in str_incr_parse: the base of its letters or digits, or this for a run of
// delimiters.
constexpr wchar_t kDelimiterRun = L'-';

std::int64_t radixOf(wchar_t base) {
    return base == L'0' ? 10 : 26;
}

}  // namespace

bool str_incr_delimit(wchar_t c) {
    return c != 0 && std::wcschr(L"-./_", c) != nullptr;
}

bool str_incr_type(wchar_t& base, wchar_t c) {
    if (c >= L'A' && c <= L'Z') {
        base = L'A';
    } else if (c >= L'a' && c <= L'z') {
        base = L'a';
    } else if (c >= L'0' && c <= L'9') {
        base = L'0';
    } else {
        return false;
    }
    return true;
}

bool str_incr_parse(CZorArrayTempl<CZorString>& list, const wchar_t* text) {
    if (!text) return false;
    list.removeAll();
    wchar_t lastKind = 0;
    for (const wchar_t* p = text; *p; ++p) {
        wchar_t kind = 0;
        bool opensEntry = false;
        if (str_incr_type(kind, *p)) {
            // Letters and digits join the entry before when it counts from the same base,
            // even across skipped characters.
            opensEntry = list.isEmpty() || kind != lastKind;
        } else if (str_incr_delimit(*p)) {
            if (list.isEmpty()) continue;  // no leading delimiters
            // Delimiters join only the one right before them: "A- -B" has two runs of them.
            kind = kDelimiterRun;
            opensEntry = p == text || !str_incr_delimit(p[-1]);
        } else {
            continue;  // skipped, the run goes on around it
        }
        if (opensEntry) list.append(CZorString(L""));
        lastKind = kind;
        list[-1] += *p;
    }
    return !list.isEmpty();
}

bool str_increment(CZorString& text, int step) {
    if (text.isNull()) return false;
    const std::wstring source(static_cast<const wchar_t*>(text));
    std::wstring reversed;
    std::int64_t carry = std::max(step, 0);
    wchar_t runBase = 0;
    for (std::size_t i = source.size(); i-- > 0;) {
        const wchar_t c = source[i];
        wchar_t base = 0;
        if (str_incr_delimit(c)) {
            reversed += c;  // passes the carry on
            continue;
        }
        if (str_incr_type(base, c)) {
            runBase = base;
            if (carry == 0) {
                reversed += c;
            } else {
                const std::int64_t sum = (c - base) + carry;
                reversed += static_cast<wchar_t>(base + sum % radixOf(base));
                carry = sum / radixOf(base);
            }
        }
        // Other characters are dropped. A carry out of the first character grows the text in
        // front, by characters of the run's base counting from 0.
        if (i == 0 && runBase != 0) {
            while (carry > 0) {
                reversed += static_cast<wchar_t>(runBase + carry % radixOf(runBase));
                carry /= radixOf(runBase);
            }
        }
    }
    std::wstring result(reversed.rbegin(), reversed.rend());
    if (!result.empty() && str_incr_delimit(result.front())) result.clear();
    detail::assignResult(text, result);
    return !result.empty();
}

CZorString str_name(const wchar_t* text, wchar_t replacement) {
    CZorString name(text);
    for (const wchar_t* illegal = L"/\\|*?:,<>\"@"; *illegal; ++illegal) {
        name.replace(*illegal, replacement);
    }
    return name.trim();
}

bool removeLastSlash(CZorString& text) {
    text.ReleaseBuffer();
    if (text.isNull()) {
        text = L"";
        return false;
    }
    int n = text.len();
    while (n > 0 && (text[n - 1] == L'/' || text[n - 1] == L'\\')) --n;
    if (n == text.len()) return false;
    text = text.left(static_cast<unsigned int>(n));
    return true;
}

}  // namespace ZOR
