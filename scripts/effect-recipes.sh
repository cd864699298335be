# Read by demo.sh and effect-plots.sh. Settings that show what each effect does to the demo loop; $effects is their order.
effects=(modulator tape-stop retrigger reverser stretcher lofi distortion gater delay shuffler)

# recipe EFFECT: puts the render options of that effect, or of all ten by turns, into the array $recipe.
recipe() {
  case "$1" in
    modulator)
      recipe=(--steps 'MOD=--------*+++++++' --param 'MOD:Frequency=320' --param 'MOD:FM Depth=1200' --param 'MOD:Spread=90')
      ;;
    tape-stop)
      recipe=(--steps 'TAP=--------*+++++++' --param 'TAP:Slow Down=2 beats')
      ;;
    retrigger)
      recipe=(--steps 'RET=----*+++----*+*+' --param 'RET:Initial Speed=1 / 16th' --param 'RET:Final Speed=1 / 64th'
        --param 'RET:Decay=30')
      ;;
    reverser)
      recipe=(--steps 'REV=*+++++++----*+++' --param 'REV:Time=1 beat')
      ;;
    stretcher)
      recipe=(--steps 'STR=--------*+++++++' --param 'STR:Speed=30' --param 'STR:Grain Size=40')
      ;;
    lofi)
      recipe=(--steps 'LFI=--------*+++++++' --param 'LFI:Frequency=5500' --param 'LFI:Bit Depth=5' --param 'LFI:FM Depth=3000')
      ;;
    distortion)
      recipe=(--steps 'DIS=--------*+++++++' --param '137=0.6' --param 'DIS:Drive=60' --param 'DIS:Wet=40')
      ;;
    gater)
      recipe=(--steps 'GAT=--------*+++++++' --param 'GAT:Step Time=1 / 16th' --param 'GAT:Smoothing=20'
        --gater-steps 1,0.3,0.7,0,1,0,0.5,0.9)
      ;;
    delay)
      recipe=(--steps 'DLY=*+++++++--------' --param 'DLY:Mode=Dotted' --param 'DLY:Time=1 / 16th' --param 'DLY:Feedback=65'
        --param 'DLY:Spread=50')
      ;;
    shuffler)
      recipe=(--steps 'SHF=----*+++++++++++' --param 'SHF:Min Time=1 / 16th' --param 'SHF:Max Time=1 / 8th'
        --param 'SHF:Repeat=25' --param 'SHF:Reverse=30' --seed 7)
      ;;
    all)
      recipe=(--beats 8
        --steps 'SHF=----*+++------------------------' --steps 'RET=------------*+*+--------------*+'
        --steps 'GAT=----------------*+++++++--------' --steps 'DLY=--------*+++--------*+++--------'
        --steps 'MOD=--------------------*+++--------' --steps 'REV=------------------------*+++----'
        --steps 'LFI=--*+----------------------*+----' --steps 'DIS=--------------*+------------*+--'
        --steps 'STR=--------*+----------------------' --steps 'TAP=----------------------------*+++'
        --param 'RET:Decay=20' --param 'STR:Speed=30' --param 'DIS:Wet=40' --param 'REV:Time=1 / 8th'
        --param 'LFI:Frequency=7000' --param 'SHF:Max Time=1 / 8th')
      ;;
    *)
      echo "no recipe for $1" >&2
      return 2
      ;;
  esac
}
