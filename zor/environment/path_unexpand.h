// The inverse of `%NAME%` expansion for paths.
#pragma once

namespace ZOR {

// Replaces the leading part of `path` by a reference to the environment variable whose value it
// is, such as "%HOME%/drawings" for "/home/ann/drawings", into `buffer` of `size` units. The
// candidates are the variables that name the user's and the system's folders (APPDATA,
// LOCALAPPDATA, USERPROFILE, ALLUSERSPROFILE, ProgramFiles, SystemRoot, XDG_CONFIG_HOME,
// XDG_DATA_HOME, XDG_CACHE_HOME, TEMP, TMPDIR, HOME) as far as they are set to an absolute path;
// the longest value that covers whole leading components of `path` wins, `/` and `\` counting as
// the same separator. False, with `buffer` untouched, when nothing applies or the result doesn't
// fit; a null `path` or `buffer` is false too.
bool PathUnExpandEnvStringsW(const wchar_t* path, wchar_t* buffer, unsigned int size);

}  // namespace ZOR
