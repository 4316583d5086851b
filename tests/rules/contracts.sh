#!/usr/bin/env bash
# What a platform library includes, and it is C: the headers of the platform and of the driver. Each
# compiles alone, and all of them together in one file, whichever folder comes first.
set -euo pipefail
c=$1
cxx=$2
cd "$3"

compile() { # <name> <header...>
  local name=$1
  shift
  printf '#include "%s"\n' "$@" > "$folder/$name.c"
  "$c" -std=c11 -pedantic -Wall -Wextra -Werror -fsyntax-only -I. -x c "$folder/$name.c"
  "$cxx" -std=c++17 -pedantic -Wall -Wextra -Werror -fsyntax-only -I. -x c++ "$folder/$name.c"
}

folder=$(mktemp -d)
trap 'rm -r "$folder"' EXIT
for header in platform/*.h driver/*.h; do
  compile alone "$header"
done
compile platform_first platform/*.h driver/*.h
compile driver_first driver/*.h platform/*.h
set -- platform/*.h driver/*.h
echo "$# headers"
[ "$#" -gt 50 ]
