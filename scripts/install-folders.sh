# Read by install.sh and uninstall.sh. install_folders ARGUMENT...: sets vst3_folder and vst2_folder, absolute, to what
# their arguments name. stage FOLDER: a folder beside what is replaced or removed there, gone with the script.
install_folders() {
  case "$#:${1:-}" in
    0:)
      vst3_folder=${HOME:?no home folder; give --prefix FOLDER}/.vst3
      vst2_folder=$HOME/.vst
      ;;
    1:--prefix=?*) vst3_folder=${1#--prefix=} ;;
    2:--prefix) vst3_folder=${2:?--prefix needs a folder} ;;
    *)
      echo "usage: $(basename "$0") [--prefix FOLDER]" >&2
      return 2
      ;;
  esac
  vst3_folder=$(realpath -m "$vst3_folder")
  vst2_folder=$(realpath -m "${vst2_folder:-$vst3_folder}")
}

staged=()
stage() {
  staged+=("$(mktemp -d "$1/.Vortel2.XXXXXX")")
}
