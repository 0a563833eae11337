# How a mount namespace gets a folder of its own below a tree of the machine. Sourced by raise-node and by the
# tests; both run in a private mount namespace.
# shellcheck shell=bash

# mirror ENTRY FOLDER: makes ENTRY appear in FOLDER under its own name.
mirror() {
    local target=$2/${1##*/}
    if [[ -L $1 ]]; then
        cp -P -- "$1" "$target"
    elif [[ -d $1 ]]; then
        mkdir -- "$target"
        mount -n --rbind -- "$1" "$target"
    else
        : >"$target"
        mount -n --bind -- "$1" "$target"
    fi
}

# graft TREE NAME FOLDER SCRATCH SOURCE: makes FOLDER appear as TREE/NAME although the machine has no such mount
# point, and must not get one: a folder in memory takes the place of TREE, with everything that TREE holds bound
# into it. SCRATCH is an empty folder; SOURCE names the new file system in /proc/*/mountinfo.
graft() {
    local tree=$1 name=$2 folder=$3 scratch=$4 source=$5 entry
    shopt -s dotglob nullglob
    mkdir -p -- "$tree" # dpkg takes /opt away with the last package that had something in it
    mount -n -t tmpfs -o "mode=$(stat -L -c %a -- "$tree")" "$source" "$scratch"
    # The folder may lie below TREE. Then the recursive bind would copy the scratch folder into itself.
    mount -n --make-unbindable "$scratch"
    for entry in "$tree"/*; do
        [[ ${entry##*/} == "$name" ]] || mirror "$entry" "$scratch"
    done
    mkdir -- "$scratch/$name"
    mount -n --bind -- "$folder" "$scratch/$name"
    mount -n --move -- "$scratch" "$tree"
    mount -n --make-private "$tree"
}
