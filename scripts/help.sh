# Read by the other scripts, before they do anything: with --help, prints what stands at the top of the script.
case "${1:-}" in
  -h | --help)
    sed -n '2,/^[^#]/s/^# \{0,1\}//p' "$0"
    exit 0
    ;;
esac
