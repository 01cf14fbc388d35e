# fish completion of brevant
complete -c brevant -f
complete -c brevant -l help -d 'Print this help'
complete -c brevant -l version -d 'Print the version, and what it stands on'
complete -c brevant -l backend -d 'desktop or headless; desktop on a display' -x -a 'desktop headless'
complete -c brevant -l screen -d 'The phone\'s screen in its own pixels; 720x1280' -x
complete -c brevant -l language -d 'The language of the texts; the locale\'s' -x
complete -c brevant -l ringtone-volume -d 'The phone\'s ringtone volume, 0 to 15; 11' -x
complete -c brevant -l data -d 'The settings\' folder; $XDG_DATA_HOME/brevant' -x -a '(__fish_complete_directories)'
complete -c brevant -l no-microphone -d 'Leave the microphone alone; the space bar blows'
complete -c brevant -l breath -d 'A sound that the microphone hears, then silence' -r -F
complete -c brevant -l performance -d 'Play a performance\'s touches, keys and breath' -r -F
complete -c brevant -l keep-performance -d 'Write what is done as a performance' -r -F
complete -c brevant -l record -d 'Write what the speaker plays: .wav, .flac, .ogg' -r -F
complete -c brevant -l midi -d 'Send tones and breath to a MIDI sequencer port'
complete -c brevant -l midi-file -d 'Write tones and breath as a MIDI file' -r -F
complete -c brevant -l screenshots -d 'Where screenshots go; the working folder' -x -a '(__fish_complete_directories)'
complete -c brevant -l trace -d 'Write all that happens, a JSON object a line' -r -F
complete -c brevant -l trace-timers -d 'Timers, too'
