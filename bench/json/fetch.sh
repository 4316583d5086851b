#!/usr/bin/env bash
# Brings the sources of the two JSON libraries that the distribution does not package, out of packages
# of the npm registry that carry them, into FOLDER/cjson and FOLDER/yyjson;
# FOLDER/includes is what the package's copy of yyjson includes.
#
#     bench/json/fetch.sh FOLDER
set -euo pipefail
mkdir -p "$1"
cd "$1"

fetch() { # <folder> <package> <path in it>
  [ -d "$1" ] && return
  local work
  work=$(mktemp -d -p .)
  npm pack --silent --pack-destination "$work" "$2" > "$work/name"
  tar xzf "$work/$(cat "$work/name")" -C "$work"
  mkdir "$work/$1"
  # shellcheck disable=SC2086
  cp -r "$work"/package/$3 "$work/$1"
  mv "$work/$1" "$1"
  rm -r "$work"
}

fetch cjson @confluentinc/kafka-javascript@1.10.1 'deps/librdkafka/src/cJSON.*'
fetch yyjson duckdb@1.4.4 'src/duckdb/third_party/yyjson/*'
fetch includes duckdb@1.4.4 src/duckdb/src/include/duckdb
