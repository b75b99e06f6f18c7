# shellcheck shell=bash disable=SC2154
# Similar images against findimagedupes: 300 JPEGs of 12 megapixels, and 300 of mixed formats.
programs+=([findimagedupes]=findimagedupes [vips]=libvips-tools)

# picture FILE WIDTH HEIGHT SEED: clouds in colour with a little noise, as photographs have it.
make_picture() {
    local file=$1 width=$2 height=$3 seed=$4 band
    for band in 1 2 3; do
        vips perlin "$work/cloud.v" "$width" "$height" --cell-size $((width / 9)) \
            --seed $((seed * 3 + band))
        vips linear "$work/cloud.v" "$work/shade.v" 90 128
        vips gaussnoise "$work/noise.v" "$width" "$height" --sigma 3 --mean 0 --seed "$seed"
        vips add "$work/shade.v" "$work/noise.v" "$work/sum.v"
        vips cast "$work/sum.v" "$work/band$band.v" uchar
    done
    vips bandjoin "$work/band1.v $work/band2.v $work/band3.v" "$work/colours.v"
    vips copy "$work/colours.v" "$file" --interpretation srgb
    rm -f "$work"/{cloud,shade,noise,sum,band1,band2,band3,colours}.v
}

# fill FOLDER COUNT WIDTH HEIGHT EXTENSION…: ten different pictures in every extension in turn, the
# rest copies: decoding costs the same, and making hundreds of pictures takes an hour.
fill() {
    local folder=$1 count=$2 width=$3 height=$4 i source extension
    shift 4
    mkdir -p "$folder"
    for ((i = 0; i < 10; i++)); do
        make_picture "$work/picture$i.v" "$width" "$height" "$i"
    done
    for ((i = 0; i < count; i++)); do
        extension=${*:i % $# + 1:1}
        source=$work/picture$((i / $# % 10)).$extension
        [ -e "$source" ] || vips copy "${source%.*}.v" "$source"
        cp "$source" "$folder/$(printf '%04d' "$i").$extension"
    done
    rm -f "$work"/picture*
}

compare_similar() {
    local name=$1 count=$2
    measure "$name" -i -w 1 \
        -n korvane "korvane scan similar-images $work/$name --json" \
        -n findimagedupes "findimagedupes $work/$name"
    table "$name"
    jq -r --argjson count "$count" '.results[] |
        "\(.command): \($count / .median * 10 | round / 10) pictures a second"' "$work/$name.json"
    peak korvane scan similar-images "$work/$name" --json
}

run_similar() {
    local count=$((300 / scale)) runs=3
    step "$count JPEGs of 12 megapixels"
    fill "$work/jpegs" "$count" 4000 3000 jpg
    compare_similar jpegs "$count"
    step "$count pictures of 2 megapixels in every format"
    fill "$work/mixed" "$count" 1600 1200 jpg png webp tif bmp gif heic avif
    compare_similar mixed "$count"
    rm -rf "${work:?}/jpegs" "${work:?}/mixed"
}
