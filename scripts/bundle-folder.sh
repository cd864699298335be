# Read by install.sh and uninstall.sh. bundle_folder ARGUMENT...: the absolute folder that their arguments name.
bundle_folder() {
  local folder
  case "$#:${1:-}" in
    0:) folder=${HOME:?no home folder; give --prefix FOLDER}/.vst3 ;;
    1:--prefix=?*) folder=${1#--prefix=} ;;
    2:--prefix) folder=${2:?--prefix needs a folder} ;;
    *)
      echo "usage: $(basename "$0") [--prefix FOLDER]" >&2
      return 2
      ;;
  esac
  realpath -m "$folder"
}
