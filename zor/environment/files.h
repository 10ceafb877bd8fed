// Path text and the file system: the parts of a path, a private scratch folder with unique file
// names, a sorted directory listing, the network form of a path, and a scope that keeps the
// working directory.
//
// Paths given to these functions may use `/` or `\` as the separator, and may start with a drive
// ("c:"), which the splitting functions keep as text and the file system calls ignore. Paths that
// these functions build use the native `/`; dos_name alone gives the backslash form it is named
// for.
#pragma once

#include <string>

#include "zor/foundation/array.h"
#include "zor/text/string.h"

namespace ZOR {

// Bits of fileDir's flags.
inline constexpr unsigned long kFileDirWithPath = 1;     // names with the directory in front
inline constexpr unsigned long kFileDirFolders = 2;      // subdirectories instead of files
inline constexpr unsigned long kFileDirNoExtension = 4;  // file names cut at their last "."
inline constexpr unsigned long kFileDirSkipHidden = 8;   // leave out names starting with "."

// The library's scratch folder "%TEMP%/ZORWERK/" (TEMP, else TMPDIR, else /tmp), created on the
// way when missing, with a trailing `/`.
CZorString tmp_dir();
// A name "tmp_<hex counter>.<extension>" in tmp_dir() that no file has yet; a null or empty
// extension is "tmp". The file isn't created, so two processes may get the same name.
CZorString fileNameTmp(const wchar_t* extension);

// Drive and directory with the trailing separator; null for a null path.
CZorString filePath(const wchar_t* path);
// The extension without its dot; null for a null path or a name without extension.
CZorString fileType(const wchar_t* path);
// Name and extension; null for a null path.
CZorString stripPath(const wchar_t* path);

// Turns `path` in place into the backslash form of the product's path texts: every `/` becomes
// `\`, environment references are expanded, and the text is returned ("a/b" gives "a\b"). The
// file functions here take that form as it is.
const wchar_t* dos_name(CZorString& path);
// Whether the path exists, after dos_name on a copy.
bool fileExist(const wchar_t* path);

// The network form of a path. False, with `out` unchanged, for a null path or one that already
// is in network form (starts with two slashes or backslashes). A path on a network file system
// (NFS, SMB/CIFS, ...) gives the mount's source followed by the path behind its mount point, as
// in "server:/export/dir/file". A local path gives false without `force`, and with it "\\.\"
// followed by its full path.
bool fileNameUNC(CZorString& out, const wchar_t* path, bool force);

// Lists the entries that `mask` (default "*.*", which matches every name; matching ignores case)
// selects, sorted by name, upper-cased unit by unit with "." sorting before every other unit, so
// "a.txt" comes before "a1.txt". False, with `list` unchanged, when the folder can't be read or
// nothing matches.
bool fileDir(CZorArrayTempl<CZorString>& list, const wchar_t* mask, unsigned long flags);

// The working directory; false, with `directory` unchanged, if it has 260 units or more.
bool GetCurrentDirectoryW(CZorString& directory);

// "<name>_2017_19.<extension>": a name stamped with the library's release.
void generateMenuFileName(CZorString& out, const wchar_t* name, const wchar_t* extension);
// "<name>_2017_19_64_<part>.<extension>": release and word size; always true.
bool appFileName(CZorString& out, const wchar_t* name, const wchar_t* part,
                 const wchar_t* extension);

// Saves the working directory and changes back to it at the end of the scope; the second form
// also changes to `directory` (a null one changes nothing). Failed changes are ignored. The working
// directory belongs to the process: a scope on one thread changes it for all.
class CWorkDirOverride {
  public:
    CWorkDirOverride();
    explicit CWorkDirOverride(const wchar_t* directory);
    CWorkDirOverride(const CWorkDirOverride& other) = default;
    CWorkDirOverride& operator=(const CWorkDirOverride& other) = default;
    ~CWorkDirOverride();

  private:
    CZorString saved;
};

namespace detail {
// The network form of the absolute native `path` by the mount table `mountInfo` (in the format
// of /proc/self/mountinfo); empty if the path lies on a local file system.
std::string remoteName(const std::string& mountInfo, const std::string& path);
}  // namespace detail

}  // namespace ZOR
