# bash completion of brevant
_brevant() {
    local current=$2 previous=$3
    case $previous in
        --backend) mapfile -t COMPREPLY < <(compgen -W "desktop headless" -- "$current") ;;
        --breath|--performance|--keep-performance|--record|--midi-file|--trace)
            compopt -o filenames
            mapfile -t COMPREPLY < <(compgen -f -- "$current")
            ;;
        --data|--screenshots)
            compopt -o filenames
            mapfile -t COMPREPLY < <(compgen -d -- "$current")
            ;;
        --screen|--language|--ringtone-volume) ;;
        *) mapfile -t COMPREPLY < <(compgen -W "--help --version --backend --screen --language --ringtone-volume --data --no-microphone --breath --performance --keep-performance --record --midi --midi-file --screenshots --trace --trace-timers" -- "$current") ;;
    esac
}
complete -F _brevant brevant
