// Helpers shared by the text tests: a printable form of a string that keeps null apart from the
// empty text, and tables of inputs with the text each one must give.
#pragma once

#include <cstddef>
#include <string>

#include "gtest/gtest.h"
#include "zor/text/string.h"

namespace zor_text_test {

// The text of `s`, or "<null>" so that a null result never passes for the empty text.
inline std::wstring text(const CZorString& s) {
    return s.isNull() ? L"<null>" : static_cast<const wchar_t*>(s);
}

struct TextCase {
    const wchar_t* input;
    const wchar_t* expected;
};

// Expects `convert(input)` to read as `expected` for every case; `convert` returns a CZorString
// or anything else that converts to one.
template <class Convert, std::size_t N>
void expectTexts(Convert convert, const TextCase (&cases)[N]) {
    for (const TextCase& c : cases) {
        SCOPED_TRACE(::testing::Message() << "input " << (c.input ? c.input : L"<nullptr>"));
        EXPECT_EQ(text(convert(c.input)), c.expected);
    }
}

}  // namespace zor_text_test
