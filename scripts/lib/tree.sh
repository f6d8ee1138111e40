# shellcheck shell=bash
# Works on copies of the tree.

# copy_tree FOLDER: copies the sources, without the build folder.
copy_tree() {
    rm -rf "$1"
    mkdir -p "$1"
    tar --create --exclude=./.git --exclude=./build . | tar --extract --directory "$1"
}
