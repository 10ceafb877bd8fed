#include "zor/text/string.h"

#include "zor/text/utf8.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <cwctype>
#include <functional>
#include <limits>
#include <memory>
#include <new>
#include <optional>
#include <string>

namespace {

// The largest text a buffer can describe: the capacity is 32-bit and one unit is reserved for
// the terminator, and `length` is signed.
constexpr std::size_t kMaxUnits = std::numeric_limits<std::int32_t>::max() - 1;

unsigned int checkedUnits(std::size_t units) {
    if (units > kMaxUnits) throw std::bad_array_new_length();
    return static_cast<unsigned int>(units);
}

bool isTrimmed(wchar_t unit) {
    return unit == L' ' || unit == L'\t' || unit == L'\n' || unit == L'\r';
}

// --- format ----------------------------------------------------------------------------------

// Rewrites a format written for the original platform's wide printf into glibc's dialect: there
// `%s`/`%c` take wide arguments and `%S`/`%C` narrow ones, glibc reads them the other way round.
std::wstring toRuntimeFormat(const wchar_t* fmt) {
    std::wstring out;
    const wchar_t* p = fmt;
    while (*p) {
        if (*p != L'%') {
            out += *p++;
            continue;
        }
        out += *p++;
        // Positional index, flags, width and precision pass through.
        while (*p && std::wcschr(L"0123456789$-+ #'.*", *p)) out += *p++;
        enum class Width { none, narrow, wide } width = Width::none;
        std::wstring modifier;
        if (p[0] == L'I' && p[1] == L'6' && p[2] == L'4') {
            modifier = L"ll";
            p += 3;
        } else if (p[0] == L'I' && p[1] == L'3' && p[2] == L'2') {
            p += 3;
        } else if (p[0] == L'I') {
            modifier = L"z";
            p += 1;
        } else if (p[0] == L'w') {
            width = Width::wide;
            p += 1;
        } else {
            while (*p && std::wcschr(L"hlLjztq", *p)) modifier += *p++;
            if (modifier == L"h") width = Width::narrow;
            if (modifier == L"l") width = Width::wide;
        }
        const wchar_t conversion = *p;
        if (conversion == L's' || conversion == L'S' || conversion == L'c' || conversion == L'C') {
            const bool upper = conversion == L'S' || conversion == L'C';
            const bool wide = width == Width::wide || (width == Width::none && !upper);
            if (wide) out += L'l';
            out += static_cast<wchar_t>(std::towlower(conversion));
            ++p;
        } else {
            out += modifier;
            if (conversion) out += *p++;
        }
    }
    return out;
}

// Formats into `out`. The first attempt uses a 128-unit buffer as the original did; a longer
// result is written to a growing memory stream rather than by repeated doubling, which also tells
// an overflow apart from a format the runtime rejects.
bool formatText(std::wstring& out, const wchar_t* fmt, std::va_list args) {
    constexpr std::size_t kFirstLimit = 128;
    wchar_t first[kFirstLimit + 1];
    std::va_list copy;
    va_copy(copy, args);
    const int written = std::vswprintf(first, kFirstLimit + 1, fmt, copy);
    va_end(copy);
    if (written >= 0) {
        out.assign(first, static_cast<std::size_t>(written));
        return true;
    }
    wchar_t* text = nullptr;
    std::size_t size = 0;
    std::FILE* stream = ::open_wmemstream(&text, &size);
    if (!stream) return false;
    const int result = std::vfwprintf(stream, fmt, args);
    std::fclose(stream);
    if (result >= 0) out.assign(text, size);
    std::free(text);
    return result >= 0;
}

// --- environment expansion --------------------------------------------------------------------

// The longest expansion kept, in units without the terminator: the original expanded into 260.
constexpr std::size_t kMaxExpansion = 259;

const char* lookUp(const std::wstring& name) {
    return std::getenv(ZOR::detail::toUtf8(name).c_str());
}

std::optional<std::wstring> environmentValue(const std::wstring& name) {
    if (name.empty()) return std::nullopt;
    std::wstring upper = name;
    for (wchar_t& unit : upper) unit = static_cast<wchar_t>(std::towupper(unit));
    const char* value = lookUp(name);
    if (!value && upper != name) value = lookUp(upper);
    if (upper == L"TEMP" && !(value && *value)) {
        // The scratch directory must always resolve: fall back as the rest of the system does.
        value = std::getenv("TMPDIR");
        if (!value || !*value) value = "/tmp";
    }
    if (!value) return std::nullopt;
    return ZOR::detail::fromUtf8(value);
}

}  // namespace

// --- Allocation and the two private workers ---------------------------------------------------

bool CZorString::allocBuffer(unsigned int units) {
    if (buffer && capacity >= units) return true;
    if (units > kMaxUnits) throw std::bad_array_new_length();
    std::size_t grown = buffer ? std::max<std::size_t>(capacity, 1) : 16;
    while (grown < units) grown *= 2;
    grown = std::min(grown, kMaxUnits);
    // Zero-filled throughout, so units behind the text never hold stale values of another buffer.
    auto* fresh = new wchar_t[grown + 1]();
    if (buffer) {
        std::wmemcpy(fresh, buffer, capacity + 1);
        delete[] buffer;
    }
    buffer = fresh;
    capacity = static_cast<std::uint32_t>(grown);
    return true;
}

bool CZorString::ownsPointer(const wchar_t* text) const {
    std::less_equal<const wchar_t*> le;
    return buffer && text && le(buffer, text) && le(text, buffer + capacity);
}

unsigned int CZorString::measure() const {
    return buffer ? static_cast<unsigned int>(::wcsnlen(buffer, capacity)) : 0;
}

int CZorString::set(const wchar_t* text) {
    if (!text) {
        delete[] buffer;
        buffer = nullptr;
        capacity = 0;
        if (length >= 0) length = 0;
        return 0;
    }
    if (text == buffer) return static_cast<int>(capacity);
    const unsigned int units = checkedUnits(std::wcslen(text));
    // A pointer into our own buffer needs no room and must not see the buffer freed.
    if (!ownsPointer(text)) allocBuffer(units);
    std::wmemmove(buffer, text, units + 1);
    if (length >= 0) length = static_cast<std::int32_t>(units);
    return static_cast<int>(capacity);
}

void CZorString::appendUnits(const wchar_t* text, std::size_t count) {
    const unsigned int old = static_cast<unsigned int>(len());
    const std::ptrdiff_t offset = ownsPointer(text) ? text - buffer : -1;
    allocBuffer(checkedUnits(old + count));
    // Growth may have moved our own text: read it from the new buffer.
    if (offset >= 0) text = buffer + offset;
    std::wmemmove(buffer + old, text, count);
    buffer[old + count] = 0;
    if (length >= 0) length = static_cast<std::int32_t>(old + count);
}

int CZorString::cat(const wchar_t* text) {
    if (text) appendUnits(text, std::wcslen(text));
    return static_cast<int>(capacity);
}

// --- Construction and assignment --------------------------------------------------------------

CZorString::CZorString() = default;

CZorString::CZorString(const wchar_t* text) {
    set(text);
}

CZorString::CZorString(const CZorString& other) : CZorObj(other) {
    set(other.buffer);
}

CZorString::CZorString(CZorString&& other) noexcept
    : CZorObj(other), buffer(other.buffer), capacity(other.capacity), length(other.len()) {
    other.buffer = nullptr;
    other.capacity = 0;
    other.length = 0;
}

CZorString::~CZorString() {
    delete[] buffer;
}

CZorString& CZorString::operator=(const CZorString& other) {
    if (&other == this) return *this;
    if (length == -1 && static_cast<unsigned int>(other.len()) > capacity) ReleaseBuffer();
    set(other.buffer);
    return *this;
}

CZorString& CZorString::operator=(const wchar_t* text) {
    if (length == -1 && text && std::wcslen(text) > capacity) ReleaseBuffer();
    set(text);
    return *this;
}

CZorString& CZorString::operator=(CZorString&& other) {
    if (&other == this) return *this;
    if (length < 0 || other.length < 0) {
        // An open side keeps the copy's rules: the open state and GetBuffer pointers survive.
        return *this = static_cast<const CZorString&>(other);
    }
    delete[] buffer;
    buffer = other.buffer;
    capacity = other.capacity;
    length = other.length;
    other.buffer = nullptr;
    other.capacity = 0;
    other.length = 0;
    return *this;
}

// --- State and raw access ---------------------------------------------------------------------

void CZorString::setNull() {
    delete[] buffer;
    buffer = nullptr;
    capacity = 0;
    length = 0;
}

int CZorString::len() const {
    return length >= 0 ? length : static_cast<int>(measure());
}

wchar_t* CZorString::GetBuffer(unsigned int units) {
    length = -1;
    allocBuffer(units);
    return buffer;
}

CZorString& CZorString::ReleaseBuffer() {
    if (length != -1) return *this;
    const unsigned int units = measure();
    // A caller that wrote over the terminator slot gets its text cut at the capacity.
    if (buffer) buffer[units] = 0;
    length = static_cast<std::int32_t>(units);
    return *this;
}

namespace {

// Resolves a negative index against the length: -1 is the last unit, -n the first. Indices below
// -n stay negative, which the callers treat as out of range.
int resolveIndex(int index, int n) {
    if (index >= 0) return index;
    if (n <= 1) return 0;
    return index < -n ? -1 : n + index;
}

}  // namespace

wchar_t CZorString::operator[](int index) const {
    const int n = len();
    const int i = resolveIndex(index, n);
    return buffer && i >= 0 && i < n ? buffer[i] : L'\0';
}

CZorString& CZorString::setAt(int index, wchar_t unit) {
    const int i = resolveIndex(index, len());
    if (i < 0) return *this;
    // One unit of room behind `i`, so that a unit written at the very end of the buffer can't
    // take the terminator slot.
    allocBuffer(checkedUnits(static_cast<std::size_t>(i) + (unit ? 1 : 0)));
    buffer[i] = unit;
    if (length >= 0) length = static_cast<std::int32_t>(measure());
    return *this;
}

// --- Concatenation ----------------------------------------------------------------------------

CZorString& CZorString::operator+=(const CZorString& text) {
    // The stored length saves measuring the right side again; appendUnits handles `text` being
    // this very object.
    if (text.buffer) appendUnits(text.buffer, static_cast<std::size_t>(text.len()));
    return *this;
}

CZorString& CZorString::operator+=(const wchar_t* text) {
    cat(text);
    return *this;
}

CZorString& CZorString::operator+=(wchar_t unit) {
    if (unit) appendUnits(&unit, 1);
    return *this;
}

CZorString CZorString::operator+(const CZorString& text) const {
    CZorString result(*this);
    result += text;
    return result;
}

CZorString CZorString::operator+(wchar_t unit) const {
    CZorString result(*this);
    result += unit;
    return result;
}

CZorString operator+(const wchar_t* left, const CZorString& text) {
    if (!left) return text;
    CZorString result(left);
    result += text;
    return result;
}

// --- Comparison -------------------------------------------------------------------------------

namespace {

const wchar_t* orEmpty(const wchar_t* text) {
    return text ? text : L"";
}

}  // namespace

bool CZorString::operator==(const CZorString& text) const {
    if (&text == this) return true;
    return *this == text.buffer;
}

bool CZorString::operator==(const wchar_t* text) const {
    if (text == buffer) return true;
    if (!text || !buffer) return false;
    return std::wcscmp(buffer, text) == 0;
}

bool CZorString::operator!=(const wchar_t* text) const {
    return !(*this == text);
}

bool CZorString::operator<(const wchar_t* text) const {
    return std::wcscmp(orEmpty(buffer), orEmpty(text)) < 0;
}

bool CZorString::operator<=(const wchar_t* text) const {
    return std::wcscmp(orEmpty(buffer), orEmpty(text)) <= 0;
}

bool CZorString::operator>(const wchar_t* text) const {
    return std::wcscmp(orEmpty(buffer), orEmpty(text)) > 0;
}

bool CZorString::operator>=(const wchar_t* text) const {
    return std::wcscmp(orEmpty(buffer), orEmpty(text)) >= 0;
}

// --- Search -----------------------------------------------------------------------------------

int CZorString::find(wchar_t unit) const {
    if (!buffer) return -1;
    const wchar_t* hit = std::wcschr(buffer, unit);
    return hit ? static_cast<int>(hit - buffer) : -1;
}

int CZorString::find(const wchar_t* pattern) const {
    if (!buffer || !pattern) return -1;
    const wchar_t* hit = std::wcsstr(buffer, pattern);
    return hit ? static_cast<int>(hit - buffer) : -1;
}

// --- Editing in place -------------------------------------------------------------------------

CZorString& CZorString::replace(wchar_t from, wchar_t to) {
    const int n = len();
    for (int i = 0; i < n; ++i) {
        if (buffer[i] != from) continue;
        buffer[i] = to;
        if (to == 0 && length >= 0) {
            length = i;
            break;
        }
    }
    return *this;
}

CZorString& CZorString::replace(const wchar_t* from, const wchar_t* to) {
    to = orEmpty(to);
    if (!buffer || !from || !*from) return *this;
    const wchar_t* hit = std::wcsstr(buffer, from);
    if (!hit) return *this;
    const std::size_t fromUnits = std::wcslen(from);
    const std::size_t toUnits = std::wcslen(to);
    if (fromUnits == 1 && toUnits == 1) return replace(from[0], to[0]);
    // Collected in a separate string: `from` and `to` may point into this one.
    CZorString result;
    result.allocBuffer(static_cast<unsigned int>(len()));
    const wchar_t* scan = buffer;
    for (; hit; hit = std::wcsstr(scan, from)) {
        result.appendUnits(scan, static_cast<std::size_t>(hit - scan));
        result.appendUnits(to, toUnits);
        scan = hit + fromUnits;
    }
    result.cat(scan);
    return *this = result;
}

CZorString& CZorString::insertAt(unsigned int pos, const wchar_t* text) {
    if (!text || pos > static_cast<unsigned int>(len())) return *this;
    if (ownsPointer(text)) {
        // Cutting at `pos` would change the text to insert: insert a copy instead.
        const CZorString copy(text);
        return insertAt(pos, copy.buffer);
    }
    const CZorString tail(buffer ? buffer + pos : nullptr);
    if (buffer) {
        buffer[pos] = 0;
        if (length >= 0) length = static_cast<std::int32_t>(pos);
    }
    cat(text);
    return *this += tail;
}

CZorString& CZorString::insertAt(unsigned int pos, wchar_t unit) {
    if (!unit) return *this;
    const wchar_t text[2] = {unit, 0};
    return insertAt(pos, text);
}

CZorString& CZorString::trimLeft() {
    const unsigned int n = static_cast<unsigned int>(len());
    unsigned int skip = 0;
    while (skip < n && isTrimmed(buffer[skip])) ++skip;
    if (skip == 0) return *this;
    std::wmemmove(buffer, buffer + skip, n - skip + 1);
    if (length >= 0) length = static_cast<std::int32_t>(n - skip);
    return *this;
}

CZorString& CZorString::trimRight() {
    unsigned int n = static_cast<unsigned int>(len());
    while (n > 0 && isTrimmed(buffer[n - 1])) buffer[--n] = 0;
    if (length >= 0) length = static_cast<std::int32_t>(n);
    return *this;
}

CZorString& CZorString::trim() {
    return trimLeft().trimRight();
}

CZorString& CZorString::makeUpper() {
    const int n = len();
    for (int i = 0; i < n; ++i) buffer[i] = static_cast<wchar_t>(std::towupper(buffer[i]));
    return *this;
}

CZorString& CZorString::makeLower() {
    const int n = len();
    for (int i = 0; i < n; ++i) buffer[i] = static_cast<wchar_t>(std::towlower(buffer[i]));
    return *this;
}

CZorString& CZorString::lfill(unsigned int width, wchar_t unit) {
    const unsigned int n = static_cast<unsigned int>(len());
    if (n >= width || !unit) return *this;
    const unsigned int size = std::max<unsigned int>(capacity, checkedUnits(width));
    std::unique_ptr<wchar_t[]> fresh(new wchar_t[size + 1]());
    std::wmemset(fresh.get(), unit, width - n);
    if (buffer) std::wmemcpy(fresh.get() + (width - n), buffer, n);
    delete[] buffer;
    buffer = fresh.release();
    capacity = size;
    if (length >= 0) length = static_cast<std::int32_t>(width);
    return *this;
}

CZorString& CZorString::rfill(unsigned int width, wchar_t unit) {
    const unsigned int n = static_cast<unsigned int>(len());
    if (n >= width || !unit) return *this;
    allocBuffer(checkedUnits(width));
    std::wmemset(buffer + n, unit, width - n);
    buffer[width] = 0;
    length = static_cast<std::int32_t>(width);
    return *this;
}

CZorString& CZorString::revert() {
    const int n = len();
    if (n > 1) std::reverse(buffer, buffer + n);
    return *this;
}

CZorString& CZorString::format(const wchar_t* fmt, ...) {
    if (!fmt) return *this;
    const std::wstring runtimeFormat = toRuntimeFormat(fmt);
    std::wstring text;
    std::va_list args;
    va_start(args, fmt);
    const bool done = formatText(text, runtimeFormat.c_str(), args);
    va_end(args);
    // set() stops at the first 0, which cuts a text that formatted one in (a %c of 0).
    if (done) set(text.c_str());
    return *this;
}

CZorString& CZorString::expandEnvironmentStrings() {
    if (!buffer) return *this;
    std::wstring out;
    const wchar_t* p = buffer;
    while (*p) {
        if (*p != L'%') {
            out += *p++;
            continue;
        }
        const wchar_t* close = std::wcschr(p + 1, L'%');
        if (!close) {
            out += p;
            break;
        }
        const std::optional<std::wstring> value = environmentValue(std::wstring(p + 1, close));
        if (value) {
            out += *value;
        } else {
            out.append(p, close + 1);
        }
        p = close + 1;
    }
    if (out.size() <= kMaxExpansion) set(out.c_str());
    return *this;
}

// --- Copies -----------------------------------------------------------------------------------

CZorString CZorString::left(unsigned int count) const {
    if (count >= static_cast<unsigned int>(len())) return *this;
    CZorString result;
    result.appendUnits(buffer, count);
    return result;
}

CZorString CZorString::right(unsigned int count) const {
    const unsigned int n = static_cast<unsigned int>(len());
    if (count > n || !buffer) return *this;
    return CZorString(buffer + (n - count));
}

CZorString CZorString::mid(unsigned int start, unsigned int count) const {
    const unsigned int n = static_cast<unsigned int>(len());
    if (start > n) return CZorString();
    if (!buffer) return *this;
    CZorString result;
    result.appendUnits(buffer + start, std::min(count, n - start));
    return result;
}

CZorString CZorString::reverse() const {
    CZorString result(*this);
    return result.revert();
}

namespace ZOR {

void dump(const wchar_t*, ...) {}

}  // namespace ZOR

template class CZorArrayTempl<CZorString>;
template class CZorMapTempl<int, CZorString>;
template class CZorMapTempl<CZorString, CZorString>;
template class CZorMapTempl<CZorString, CZorArrayTempl<CZorString>>;
