// The version record of a module or file, and the comparison of version texts.
//
// The record is the `.zor_version` section of an ELF file: "query=value" entries, each ended by a
// 0 byte, in UTF-8. The library carries its own record, made at build time from the project's
// name and version. Queries are paths:
//   \VarFileInfo\Translation               language and code page pairs, "0409 04b0 ..."
//   \StringFileInfo\<lang><cp>\<Name>      the strings ProductName, CompanyName, LegalCopyright,
//                                          LegalTrademarks, ProductVersion
//   \                                      the numeric product version "a.b.c.d"
#pragma once

#include <cstddef>

#include "zor/foundation/uniq_pointer.h"
#include "zor/text/string.h"

// A loaded module: any address inside it. Null stands for the running program.
using HINSTANCE = void*;

namespace ZOR {

class CVersionInfo {
  public:
    // Reads the record of the loaded module that `module` lies in; null: the running program.
    explicit CVersionInfo(HINSTANCE module = nullptr);
    // Reads the record of an ELF file.
    explicit CVersionInfo(const wchar_t* fileName);
    // A copy holds its own copy of the record.
    CVersionInfo(const CVersionInfo& other);
    CVersionInfo& operator=(const CVersionInfo& other);
    virtual ~CVersionInfo();

    // The strings of the record; "<no version info found>" without a record, null for a string
    // the record lacks. The pointers live as long as the object.
    const wchar_t* GetProductName();
    const wchar_t* GetCompanyName();
    const wchar_t* GetCopyright();
    const wchar_t* GetTrademark();
    // The numeric product version "a.b.c.d", or the same literal. The text lives in one
    // module-wide string that the next call overwrites.
    const wchar_t* GetProductVersion();

    // Compares the "."-separated numbers of two version texts from the left: 1 if `a` is
    // larger, -1 if smaller, 0 if equal as far as the shorter text goes ("1.2" equals "1.2.3").
    static int versionCompare(const wchar_t* a, const wchar_t* b);

  private:
    void read(const char* fileName);
    // The value of a query, or null.
    const wchar_t* query(const wchar_t* path) const;
    const wchar_t* stringEntry(const wchar_t* name) const;

    int valid = 0;
    // The record as wide text: query, value, query, value, ... each 0-terminated, then a 0.
    CUniqPointer<unsigned char> block;
    std::size_t blockSize = 0;  // Bytes of `block`, so that copies can take the whole record.
    CZorString prefix;          // "\StringFileInfo\<lang><cp>\" of the last translation.
};

}  // namespace ZOR
