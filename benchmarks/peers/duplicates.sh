# shellcheck shell=bash disable=SC2154
# Finding files of identical content.
programs[fdupes]=fdupes
programs[jdupes]=jdupes
programs[rdfind]=rdfind
programs[rmlint]=rmlint

# find_duplicates NAME KIND COUNT
find_duplicates() {
    local name=$1 data=$work/$1
    step "making the files of $name"
    korvane-test-data "$2" "$data" "$3"
    step "finding the copies among them"
    measure "$name" --warmup 1 \
        -n 'korvane scan duplicate-finder' "korvane scan duplicate-finder $data --json" \
        -n 'rdfind -dryrun true' "rdfind -dryrun true -makeresultsfile false $data" \
        -n 'fdupes -rq' "fdupes -rq $data" \
        -n 'jdupes -rq' "jdupes -rq $data" \
        -n 'rmlint' "rmlint --no-crossdev --types duplicates --output summary $data" \
        -n 'sha256sum of every file' "find $data -type f -exec sha256sum {} +"
    table "$name"
    peak korvane scan duplicate-finder "$data" --json
    peak fdupes -rq "$data"
    rm -rf -- "$data"
}

run_duplicates() {
    find_duplicates 'copies-of-16-KiB' copies $((20000 / scale))
    find_duplicates 'copies-of-64-MiB' media $((32 / scale > 4 ? 32 / scale : 4))
}
