// CZorString: the library's one string class.
//
// A mutable, deep-copying string of wchar_t code units (32-bit on Linux) with three features
// beyond an ordinary string:
//
//  * A null state distinct from the empty text. A default-constructed string, one built or
//    assigned from a null pointer, a copy of a null string and `kNull` are null: `isNull()` is
//    true, `len()` is 0 and the conversion to `const wchar_t*` gives a null pointer. A string
//    built from L"" is empty: not null, pointing at a terminator, with a 16-unit buffer.
//  * An open-buffer state. `GetBuffer(n)` hands out the buffer for direct writing and switches
//    the stored length off (-1); every operation then measures the text up to its terminator,
//    until `ReleaseBuffer()` measures and stores it again. Edits keep an open string open unless
//    their description says otherwise.
//  * Negative indexing: -1 is the last unit, -len() the first.
//
// Text is handled unit by unit; nothing here knows surrogates or combining marks. A unit of
// value 0 ends the text: no operation holds an embedded 0, and writing one truncates.
//
// Capacity starts at 16 and doubles; it never falls while the buffer stays allocated (only
// `setNull` and assigning a null pointer free it). `lfill` is the one operation that sizes
// without doubling.
//
// Self-aliasing is safe everywhere: a string may be assigned, appended or inserted from itself or
// from a pointer into its own buffer.
#pragma once

#include <cstddef>
#include <cstdint>

#include "zor/foundation/array.h"
#include "zor/foundation/map.h"
#include "zor/foundation/object.h"

class CZorString : public CZorObj {
  public:
    // The null string, for assigning or comparing when a name is to be cleared. Defined with the
    // module's other constants, so it is not usable from static constructors that run earlier.
    static const CZorString kNull;

    // --- Construction and assignment -----------------------------------------------------------

    CZorString();
    CZorString(const wchar_t* text);  // implicit on purpose: literals pass as strings
    // The copy gets a capacity that follows from the text, not from the source's capacity. A copy
    // of an open string is closed.
    CZorString(const CZorString& other);
    // Takes the buffer over; `other` is left null.
    CZorString(CZorString&& other) noexcept;
    ~CZorString() override;

    // Assigning an object to itself does nothing. On an open string the result stays open (and a
    // pointer from GetBuffer stays good) when the new text fits the capacity; a longer text closes
    // the string first, so it ends closed with the right length.
    CZorString& operator=(const CZorString& other);
    CZorString& operator=(const wchar_t* text);
    // Same observable result as the copy. When both sides are closed it takes the buffer over and
    // leaves `other` null; otherwise it copies and `other` keeps its text.
    CZorString& operator=(CZorString&& other);

    // --- State and raw access ------------------------------------------------------------------

    bool isNull() const { return buffer == nullptr; }
    // Frees the buffer: the string becomes null and closed.
    void setNull();
    // The number of units; measured in the open state, 0 for a null string.
    int len() const;
    // The buffer itself: a null pointer for a null string.
    operator const wchar_t*() const { return buffer; }

    // Opens the buffer for at least `units` units plus a terminator and returns it. The old text
    // stays; a first allocation is zero-filled.
    wchar_t* GetBuffer(unsigned int units);
    // Closes an open string by measuring its text; does nothing on a closed one.
    CZorString& ReleaseBuffer();

    // The unit at `index` (negative counts from the end). 0 at or past the end, for an index
    // below -len(), and on a null string. For len() of 0 or 1 any negative index is 0.
    wchar_t operator[](int index) const;
    // Stores `unit` at `index` (resolved like operator[]), allocating as needed, so a null string
    // stops being null. A closed string measures its text again: a 0 below the length truncates,
    // a unit written past the terminator doesn't lengthen the text. An index below -len() is
    // ignored.
    CZorString& setAt(int index, wchar_t unit);

    // --- Concatenation -------------------------------------------------------------------------

    // A null right side changes nothing; an empty one makes a null left side empty.
    CZorString& operator+=(const CZorString& text);
    // A null pointer changes nothing; L"" makes a null string empty.
    CZorString& operator+=(const wchar_t* text);
    // The unit 0 changes nothing.
    CZorString& operator+=(wchar_t unit);
    CZorString operator+(const CZorString& text) const;
    CZorString operator+(wchar_t unit) const;

    // --- Comparison ----------------------------------------------------------------------------
    //
    // Case-sensitive, by code unit value. `==` tells null from empty: a null string equals only a
    // null string or a null pointer. `!=` is exactly the negation of `==`. The ordering operators
    // read a null on either side as the empty text, so null <= L"" and null >= L"" are both true.
    // A CZorString on the right reaches the pointer forms through its conversion.

    bool operator==(const CZorString& text) const;
    bool operator==(const wchar_t* text) const;
    bool operator!=(const wchar_t* text) const;
    bool operator<(const wchar_t* text) const;
    bool operator<=(const wchar_t* text) const;
    bool operator>(const wchar_t* text) const;
    bool operator>=(const wchar_t* text) const;

    // --- Search --------------------------------------------------------------------------------

    // Index of the first occurrence, else -1; -1 on a null string. find(L'\0') gives the length,
    // and an empty pattern gives 0 (on a non-null string). A null pattern gives -1.
    int find(wchar_t unit) const;
    int find(const wchar_t* pattern) const;

    // --- Editing in place (each returns the object) --------------------------------------------

    // Overwrites every `from` with `to`. With `to` 0 on a closed string the text is cut at the
    // first hit; on an open string the walk goes on to the end.
    CZorString& replace(wchar_t from, wchar_t to);
    // Replaces non-overlapping occurrences of `from`, scanning from the left; inserted text is not
    // scanned again. A null `to` is the empty text. Nothing changes on a null string, for a null
    // or empty `from`, or when `from` doesn't occur. A text replaced down to nothing is empty.
    CZorString& replace(const wchar_t* from, const wchar_t* to);
    // Inserts before unit `pos`; `pos` equal to the length appends. A null `text` or a `pos` past
    // the length changes nothing; on a null string with `pos` 0 the result isn't null.
    CZorString& insertAt(unsigned int pos, const wchar_t* text);
    // The unit 0 changes nothing.
    CZorString& insertAt(unsigned int pos, wchar_t unit);
    // Remove blanks, tabs, line feeds and carriage returns (only these) from both ends, the left
    // or the right. Text of blanks only ends empty, a null string stays null.
    CZorString& trim();
    CZorString& trimLeft();
    CZorString& trimRight();
    // Unit by unit through the runtime's locale-dependent towupper / towlower.
    CZorString& makeUpper();
    CZorString& makeLower();
    // Pad with `unit` on the left / right up to `width` units; a text of that length or longer,
    // and a fill unit of 0, leave the string unchanged. A null string gets `width` fill units.
    // `lfill` sizes the buffer to exactly max(capacity, width) and keeps an open string open;
    // `rfill` leaves the string closed.
    CZorString& lfill(unsigned int width, wchar_t unit);
    CZorString& rfill(unsigned int width, wchar_t unit);
    // Reverses the units in place.
    CZorString& revert();
    // Formats with the wide printf conventions of the original platform, which differ from
    // glibc's: `%s` and `%c` take a WIDE text / unit, `%S` and `%C` (and `%hs`, `%hc`) a narrow
    // one, `%ls`/`%ws` and `%lc`/`%wc` wide; `%I64`, `%I32` and `%I` are the length modifiers of
    // 64-bit, 32-bit and pointer-sized integers. Everything else is passed to glibc as it stands.
    // The text is cut at an embedded 0. A null format, or one the runtime rejects, leaves the
    // string unchanged.
    CZorString& format(const wchar_t* fmt, ...);
    // Replaces each `%NAME%` by the value of the environment variable NAME. A name without a value
    // stays in the text as it was (and the scan goes on behind its closing `%`); an unpaired `%`
    // stays. NAME is looked up as written, then in upper case; TEMP falls back to $TMPDIR and then
    // to "/tmp". Values are read as UTF-8. The result is limited to 259 units: an expansion that
    // needs more leaves the text unchanged. Does nothing on a null string.
    CZorString& expandEnvironmentStrings();

    // --- Copies --------------------------------------------------------------------------------

    // The first `count` units (empty, not null, for 0); with `count` at or above the length a
    // copy of the whole, which keeps a null string null.
    CZorString left(unsigned int count) const;
    // The last `count` units (for 0: empty on a non-null string, null on a null one); with
    // `count` above the length a copy of the whole.
    CZorString right(unsigned int count) const;
    // `count` units from `start`: null for `start` past the length, empty for `start` equal to it
    // on a non-null string.
    CZorString mid(unsigned int start, unsigned int count) const;
    // A reversed copy.
    CZorString reverse() const;

    // --- Escapes, encodings and patterns -------------------------------------------------------
    //
    // These members are implemented beside the escape, encoding and text-list functions of this
    // folder, not in string.cpp. Each returns the object unless told otherwise.

    CZorString& escape();
    CZorString& unEscape();
    CZorString& escapeHtml(const wchar_t* chars);
    CZorString& escapeHtmlSpecial();
    CZorString& unEscapeHtml();
    CZorString& escapeWideChar();
    CZorString& unEscapeWideChar();
    CZorString& quote();
    CZorString& unQuote();
    CZorString& fromMultiByte(const char* text, int codePage);
    char* toMultiByte(char*& target, int codePage) const;
    bool match(const wchar_t* pattern, wchar_t separator) const;

  private:
    // Replace and append the text; both return the capacity. Either may be handed a pointer into
    // this object's own buffer.
    int set(const wchar_t* text);
    int cat(const wchar_t* text);
    // Makes room for `units` units plus a terminator: a first buffer has 16 units, doubled until
    // large enough, and a growing one doubles its capacity. Never touches `length`; always true
    // (allocation failure throws).
    bool allocBuffer(unsigned int units);
    // Appends `count` units of `text` (which may lie in this object's own buffer).
    void appendUnits(const wchar_t* text, std::size_t count);
    // True when `text` points into this object's buffer (terminator slot included).
    bool ownsPointer(const wchar_t* text) const;
    // The length of the text as it stands in the buffer, bounded by the capacity.
    unsigned int measure() const;

    wchar_t* buffer = nullptr;
    std::uint32_t capacity = 0;
    std::int32_t length = 0;  // -1: open buffer, length unknown
};

// The free concatenation: a null left pointer gives a copy of `text`, nullness included.
CZorString operator+(const wchar_t* left, const CZorString& text);

namespace ZOR {
// A debugging hook kept for its signature: takes a format and arguments and does nothing.
void dump(const wchar_t* fmt, ...);
}  // namespace ZOR

// The string lists and string maps of the interface are compiled once, in string.cpp.
extern template class CZorArrayTempl<CZorString>;
extern template class CZorMapTempl<int, CZorString>;
extern template class CZorMapTempl<CZorString, CZorString>;
extern template class CZorMapTempl<CZorString, CZorArrayTempl<CZorString>>;
