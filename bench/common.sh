# Shared by the benchmark scripts: where things are, a folder of real JPEGs, timing.
# shellcheck shell=bash
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cli=${ORV_CLI:-$root/build/src/orvelle-cli}
app=${ORV_APP:-$root/build/src/orvelle}
corpus=${ORV_CORPUS_DIR:-$root/../shared/corpus}

# fill_with_jpegs DIR COUNT: COUNT copies of the corpus JPEGs, named IMG_00000.jpg and on.
fill_with_jpegs() {
  local dir=$1 count=$2 i
  # Empty files in the corpus would only measure the error path.
  mapfile -t sources < <(find "$corpus" -type f \( -iname '*.jpg' -o -iname '*.jpeg' \) -size +0 | sort)
  [ ${#sources[@]} -gt 0 ] || { echo "no JPEGs under $corpus" >&2; exit 1; }
  mkdir -p "$dir"
  for ((i = 0; i < count; i++)); do
    cp "${sources[i % ${#sources[@]}]}" "$dir/$(printf 'IMG_%05d.jpg' "$i")"
  done
  cat "$dir"/* > /dev/null   # warm the cache for every contender alike
}

rate() { awk -v n="$1" -v s="$2" 'BEGIN { printf "%.0f", n / s }'; }

# seconds COMMAND...: wall time of one run, output discarded.
seconds() {
  local start end
  start=$(date +%s.%N); "$@" > /dev/null 2>&1 || true; end=$(date +%s.%N)
  awk -v a="$start" -v b="$end" 'BEGIN { print b - a }'
}

# link_corpus_files DIR COUNT EXT...: COUNT names in DIR for the corpus files with those
# extensions, as hard links (movies are large; the file system holds one copy of each), named
# MEDIA_00000.ext and on.
link_corpus_files() {
  local dir=$1 count=$2 i; shift 2
  local expr=() ext
  for ext in "$@"; do expr+=(-o -iname "*.$ext"); done
  mapfile -t sources < <(find "$corpus" -type f \( "${expr[@]:1}" \) -size +0 | sort)
  [ ${#sources[@]} -gt 0 ] || { echo "no $* files under $corpus" >&2; exit 1; }
  mkdir -p "$dir"
  for ((i = 0; i < count; i++)); do
    local source=${sources[i % ${#sources[@]}]}
    ln "$source" "$dir/$(printf 'MEDIA_%05d' "$i").${source##*.}" 2>/dev/null \
      || cp "$source" "$dir/$(printf 'MEDIA_%05d' "$i").${source##*.}"
  done
}
