# cmake -DROOT=… -DOUTPUT=… -DPATTERNS=… -P SourceFingerprint.cmake
# Writes a C++ file that holds a hash of all files under ROOT that the patterns name.
cmake_minimum_required(VERSION 3.25)
file(GLOB_RECURSE files LIST_DIRECTORIES false RELATIVE "${ROOT}" ${PATTERNS})
list(SORT files)
set(hashes "")
foreach(name IN LISTS files)
  file(SHA1 "${ROOT}/${name}" hash)
  string(APPEND hashes "${hash} ${name}\n")
endforeach()
string(SHA1 fingerprint "${hashes}")
file(CONFIGURE OUTPUT "${OUTPUT}" CONTENT
"// Written by the build.
extern const char vorelGeneratorFingerprint[];
const char vorelGeneratorFingerprint[] = \"@fingerprint@\";
" @ONLY)
