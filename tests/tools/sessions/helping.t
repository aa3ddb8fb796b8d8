What each command says of itself.

  $ . "$TESTDIR/begin"
  $ host --help
  A small host for VST 2.4, LV2 and CLAP effects
  Usage: mirelon-host [OPTIONS] SUBCOMMAND
  
  Options:
    -h,--help                   Print this help message and exit
    --version                   Display program version information and exit
  
  Subcommands:
    check                       Find out what an effect gets wrong
    info                        Show what the plug-in says about itself
    render                      Send an audio file through the plug-in
    plot                        Draw a file's stereo image before and after the plug-in
    compare                     Say whether two audio files hold the same sound
    chunk                       Save, load or show the plug-in's state
    preset                      Save or show preset files
    bank                        Save, show or make bank files
    convert                     Write a preset or bank file in a byte order
    verify                      Say what is wrong with preset and bank files
    edit                        Open the plug-in's editor in a window
    screenshot                  Take a picture of the plug-in's editor
    completion                  Print a script that completes command lines in a shell
  
  $ host render --help
  Send an audio file through the plug-in
  Usage: mirelon-host render [OPTIONS] FILE...
  
  Positionals:
    FILE ... REQUIRED           IN, any mono or stereo audio file, and OUT, the result, whose extension says the format, by default that of IN; - is standard input and output. With --out-dir every FILE is an IN
  
  Options:
    -h,--help                   Print this help message and exit
    --plugin FILE               The plug-in: a VST 2.4 .so, a .clap, an LV2 bundle or an LV2 URI (default: the Mirelon found)
    --chunk FILE                Start from a state saved with `chunk save`
    --bank-file FILE            Load a bank file (.dvb)
    --preset PRESET             Choose a preset by number or name
    --set NAME=VALUE            Set a parameter to what the plug-in is to show (gain=-6, width=150%, balance=L20, process=off)
    --set-normalised NAME=VALUE Set a parameter to a number from 0 to 1 (gain=0.25)
    --preset-file FILE          Load a preset file (.dvp) over the chosen preset
    --automate NAME=FIRST:LAST  Move a parameter in equal steps per frame, from FIRST at the first block to LAST at the last, values as for --set
    --automate-normalised NAME=FIRST:LAST
                                The same with numbers from 0 to 1
    --block FRAMES:INT in [1 - 1048576]=1024
                                Frames per block
    --double                    Process in double precision
    --strict                    Refuse an input of which a part is missing
    --format KIND:{wav,flac,ogg,oga,opus,aiff,aif,aifc,caf,w64,rf64,au,snd,mp3}
                                Kind of file, whatever OUT is called: wav, rf64, w64, aiff, caf, flac, ...
    --bits BITS:{8,16,24,32,float,double}
                                Samples of OUT: 8, 16, 24, 32, float or double
    --dither                    Add triangular noise of two steps before rounding, the same in every run
    --headroom DB:FLOAT in [0 - 120]
                                Lower the output by so many decibels
    --no-clip                   Fail when samples are beyond full scale
    --overwrite                 Replace OUT when it exists
    --out-dir FOLDER            Render every IN into this folder
    --jobs NUMBER:INT in [1 - 1024]
                                Files at a time with --out-dir (default: one for each processor)
    --loudness                  Measure EBU R 128 loudness and true peak, which takes longer
    --json                      Print the report as JSON
    --quiet                     Print no report
  
  $ host compare --help
  Say whether two audio files hold the same sound
  Usage: mirelon-host compare [OPTIONS] A B
  
  Positionals:
    A TEXT REQUIRED             Any mono or stereo audio file, - is standard input
    B TEXT REQUIRED             Another one
  
  Options:
    -h,--help                   Print this help message and exit
    --json                      Print the result as JSON
    --quiet                     Print nothing, the exit status says it
  
  $ host plot --help
  Draw a file's stereo image before and after the plug-in
  Usage: mirelon-host plot [OPTIONS] IN OUT
  
  Positionals:
    IN TEXT REQUIRED            Any mono or stereo audio file
    OUT TEXT REQUIRED           The picture, a .png
  
  Options:
    -h,--help                   Print this help message and exit
    --plugin FILE               The plug-in: a VST 2.4 .so, a .clap, an LV2 bundle or an LV2 URI (default: the Mirelon found)
    --chunk FILE                Start from a state saved with `chunk save`
    --bank-file FILE            Load a bank file (.dvb)
    --preset PRESET             Choose a preset by number or name
    --set NAME=VALUE            Set a parameter to what the plug-in is to show (gain=-6, width=150%, balance=L20, process=off)
    --set-normalised NAME=VALUE Set a parameter to a number from 0 to 1 (gain=0.25)
    --preset-file FILE          Load a preset file (.dvp) over the chosen preset
    --automate NAME=FIRST:LAST  Move a parameter in equal steps per frame, from FIRST at the first block to LAST at the last, values as for --set
    --automate-normalised NAME=FIRST:LAST
                                The same with numbers from 0 to 1
    --block FRAMES:INT in [1 - 1048576]=1024
                                Frames per block
    --double                    Process in double precision
    --strict                    Refuse an input of which a part is missing
  
  $ host info --help
  Show what the plug-in says about itself
  Usage: mirelon-host info [OPTIONS]
  
  Options:
    -h,--help                   Print this help message and exit
    --plugin FILE               The plug-in: a VST 2.4 .so, a .clap, an LV2 bundle or an LV2 URI (default: the Mirelon found)
    --json Excludes: --parameter-names
                                Print it as JSON
    --parameter-names Excludes: --json
                                Print the names of its parameters alone, one on a line
  
  $ host edit --help
  Open the plug-in's editor in a window
  Usage: mirelon-host edit [OPTIONS] [IN]
  
  Positionals:
    IN TEXT Excludes: --input   An audio file that runs through the plug-in, over and over
  
  Options:
    -h,--help                   Print this help message and exit
    --plugin FILE               The plug-in: a VST 2.4 .so, a .clap, an LV2 bundle or an LV2 URI (default: the Mirelon found)
    --preset PRESET             Choose a preset by number or name
    --set NAME=VALUE            Set a parameter to what the plug-in is to show (gain=-6, width=150%, balance=L20, process=off)
    --set-normalised NAME=VALUE Set a parameter to a number from 0 to 1 (gain=0.25)
    --scale FLOAT:FLOAT in [1 - 3]
                                Size of the window, 1 to 3
    --play Needs: IN            Play it on the machine's sound output
    --device NAME               Play on this sound card (or part of its name)
    --list-devices              Name the sound cards, and end
    --once Needs: IN            Stop at the file's end
    --input Excludes: IN        Play what comes in at the sound card instead
    --drive DRIVE:{both,glib,idle}
                                What keeps the editor alive: the host's idle command, a GLib main loop or both
  
  Keys while sound runs through it, in its window and in the terminal:
  space: play or stop; left, right: 5 s; home: to the begin; l: loop; b: bypass; e: equal loudness; q: quit
  $ host screenshot --help
  Take a picture of the plug-in's editor
  Usage: mirelon-host screenshot [OPTIONS] OUT
  
  Positionals:
    OUT TEXT REQUIRED           The picture, a .png
  
  Options:
    -h,--help                   Print this help message and exit
    --plugin FILE               The plug-in: a VST 2.4 .so, a .clap, an LV2 bundle or an LV2 URI (default: the Mirelon found)
    --preset PRESET             Choose a preset by number or name
    --set NAME=VALUE            Set a parameter to what the plug-in is to show (gain=-6, width=150%, balance=L20, process=off)
    --set-normalised NAME=VALUE Set a parameter to a number from 0 to 1 (gain=0.25)
    --scale FLOAT:FLOAT in [1 - 3]
                                Size of the window, 1 to 3
    --input FILE                Let the meters follow this audio file for a moment first
  
  $ host chunk --help
  Save, load or show the plug-in's state
  Usage: mirelon-host chunk [OPTIONS] SUBCOMMAND
  
  Options:
    -h,--help                   Print this help message and exit
  
  Subcommands:
    save                        Write the plug-in's state to a file
    load                        Give the plug-in a state and say what it makes of it
    show                        List what a saved state holds
  
  $ host chunk save --help
  Write the plug-in's state to a file
  Usage: mirelon-host chunk save [OPTIONS] FILE
  
  Positionals:
    FILE TEXT REQUIRED          The state, byte for byte
  
  Options:
    -h,--help                   Print this help message and exit
    --plugin FILE               The plug-in: a VST 2.4 .so, a .clap, an LV2 bundle or an LV2 URI (default: the Mirelon found)
    --preset PRESET             Choose a preset by number or name
    --set NAME=VALUE            Set a parameter to what the plug-in is to show (gain=-6, width=150%, balance=L20, process=off)
    --set-normalised NAME=VALUE Set a parameter to a number from 0 to 1 (gain=0.25)
  
  $ host chunk load --help
  Give the plug-in a state and say what it makes of it
  Usage: mirelon-host chunk load [OPTIONS] FILE
  
  Positionals:
    FILE TEXT REQUIRED          The state, byte for byte
  
  Options:
    -h,--help                   Print this help message and exit
    --plugin FILE               The plug-in: a VST 2.4 .so, a .clap, an LV2 bundle or an LV2 URI (default: the Mirelon found)
  
  $ host chunk show --help
  List what a saved state holds
  Usage: mirelon-host chunk show [OPTIONS] FILE
  
  Positionals:
    FILE TEXT REQUIRED          The state, byte for byte
  
  Options:
    -h,--help                   Print this help message and exit
    --plugin FILE               The plug-in: a VST 2.4 .so, a .clap, an LV2 bundle or an LV2 URI (default: the Mirelon found)
  
  $ host preset --help
  Save or show preset files
  Usage: mirelon-host preset [OPTIONS] SUBCOMMAND
  
  Options:
    -h,--help                   Print this help message and exit
  
  Subcommands:
    save                        Write a preset of the plug-in to a file
    show                        List what a preset file holds
  
  $ host preset save --help
  Write a preset of the plug-in to a file
  Usage: mirelon-host preset save [OPTIONS] FILE
  
  Positionals:
    FILE TEXT REQUIRED          The preset file (.dvp)
  
  Options:
    -h,--help                   Print this help message and exit
    --preset PRESET             Choose a preset by number or name
    --set NAME=VALUE            Set a parameter to what the plug-in is to show (gain=-6, width=150%, balance=L20, process=off)
    --set-normalised NAME=VALUE Set a parameter to a number from 0 to 1 (gain=0.25)
    --plugin FILE               The plug-in: a VST 2.4 .so, a .clap, an LV2 bundle or an LV2 URI (default: the Mirelon found)
  
  $ host preset show --help
  List what a preset file holds
  Usage: mirelon-host preset show [OPTIONS] FILE
  
  Positionals:
    FILE TEXT REQUIRED          The preset file (.dvp)
  
  Options:
    -h,--help                   Print this help message and exit
    --plugin FILE               The plug-in: a VST 2.4 .so, a .clap, an LV2 bundle or an LV2 URI (default: the Mirelon found)
  
  $ host bank --help
  Save, show or make bank files
  Usage: mirelon-host bank [OPTIONS] SUBCOMMAND
  
  Options:
    -h,--help                   Print this help message and exit
  
  Subcommands:
    save                        Write the plug-in's bank to a file
    show                        List what a bank file holds
    import                      Make a bank file from JSON
  
  $ host bank save --help
  Write the plug-in's bank to a file
  Usage: mirelon-host bank save [OPTIONS] FILE
  
  Positionals:
    FILE TEXT REQUIRED          The bank file (.dvb)
  
  Options:
    -h,--help                   Print this help message and exit
    --bank FILE                 Load this bank file first
    --plugin FILE               The plug-in: a VST 2.4 .so, a .clap, an LV2 bundle or an LV2 URI (default: the Mirelon found)
  
  $ host bank show --help
  List what a bank file holds
  Usage: mirelon-host bank show [OPTIONS] FILE
  
  Positionals:
    FILE TEXT REQUIRED          The bank file (.dvb)
  
  Options:
    -h,--help                   Print this help message and exit
    --json                      Print it as JSON, for `import` to read back
    --plugin FILE               The plug-in: a VST 2.4 .so, a .clap, an LV2 bundle or an LV2 URI (default: the Mirelon found)
  
  $ host bank import --help
  Make a bank file from JSON
  Usage: mirelon-host bank import [OPTIONS] JSON FILE
  
  Positionals:
    JSON TEXT REQUIRED          What `show --json` wrote, edited or not
    FILE TEXT REQUIRED          The bank file (.dvb)
  
  Options:
    -h,--help                   Print this help message and exit
    --plugin FILE               The plug-in: a VST 2.4 .so, a .clap, an LV2 bundle or an LV2 URI (default: the Mirelon found)
  
  $ host convert --help
  Write a preset or bank file in a byte order
  Usage: mirelon-host convert [OPTIONS] IN OUT
  
  Positionals:
    IN TEXT REQUIRED            A preset file or bank file of either byte order
    OUT TEXT REQUIRED           The same with the byte order asked for
  
  Options:
    -h,--help                   Print this help message and exit
    --byte-order ORDER:{big,little} REQUIRED
                                big or little: whose file it is to be (values are big-endian in both)
    --plugin FILE               The plug-in: a VST 2.4 .so, a .clap, an LV2 bundle or an LV2 URI (default: the Mirelon found)
  
  $ host verify --help
  Say what is wrong with preset and bank files
  Usage: mirelon-host verify [OPTIONS] FILE...
  
  Positionals:
    FILE TEXT ... REQUIRED      Preset files and bank files
  
  Options:
    -h,--help                   Print this help message and exit
    --plugin FILE               The plug-in: a VST 2.4 .so, a .clap, an LV2 bundle or an LV2 URI (default: the Mirelon found)
  
  $ host check --help
  Find out what an effect gets wrong
  Usage: mirelon-host check [OPTIONS] [FILE...]
  
  Positionals:
    FILE ...                    Plug-ins: VST 2.4 .so files, LV2 bundles or URIs, .clap files (default: the Mirelon found)
  
  Options:
    -h,--help                   Print this help message and exit
    --level INT:INT in [1 - 10]=10
                                How strict to be: 1 loads it, 10 runs every check
    --only CHECK ...            Only this check, whatever its level; repeatable
    --skip CHECK ...            Not this check; repeatable
    --timeout SECONDS:INT in [1 - 86400]
                                Time for each check, in seconds
    --in-process                Run the checks in this process, for a debugger
    --seed UINT                 Replay a run: its random numbers start here
    --strict                    Warnings count as failures
    --json                      One JSON object instead of lines
    --list                      Name the checks, their levels and formats
    --verbose                   With --list: say what each check does
  
  
  Exit status: 0 no check failed, 1 a check failed, 2 a file could not be checked.
  Checks of the editor need an X display and are skipped without one.
  $ host check --list
   1  load-twice                       all
   1  load-time                        all
   1  load-memory                      all
   1  symbols-entry                    all
   1  symbols-leaked                   all
   1  entry-reloaded                   CLAP
   1  entry-counted                    CLAP
   1  extensions-unknown               CLAP
   2  identity-stable                  all
   2  programs-stable                  all
   2  parameter-texts-stable           all
   2  parameter-values-in-range        all
   2  parameter-properties-stable      VST 2
   2  host-without-extensions          CLAP
   2  host-without-one-extension       CLAP
   2  instances-independent            CLAP
   2  parameter-identifiers            CLAP
   2  parameter-ranges                 CLAP
   2  parameter-texts-read-back        CLAP
   3  audio-every-rate-and-block       all
   3  audio-double-precision           VST 2
   3  audio-changing-blocks            all
   3  audio-in-place                   all
   3  audio-silence                    all
   4  state-round-trip                 all
   4  state-fresh-instance             all
   4  state-with-editor                all
   4  state-in-parts                   CLAP
   5  automation-every-block           all
   5  automation-holds                 all
   5  notes-played                     VST 2
   5  notes-crowded                    VST 2
   5  parameter-set-and-read           CLAP
   5  events-every-frame               CLAP
   5  events-unknown-types             CLAP
   5  flush-without-audio              CLAP
   6  editor-opened-twice              all
   6  editor-in-two-instances          all
   6  editor-while-processing          all
   6  editor-before-audio              VST 2
   7  suspend-resume-loop              all
   7  rate-change-while-running        VST 2
   7  activation-loop                  CLAP
   7  processing-loop                  CLAP
   8  parameter-strange-values         all
   8  parameter-strange-indices        VST 2
   8  parameter-random-bits            all
   8  notes-strange-bytes              VST 2
   8  notes-strange-events             VST 2
   8  parameter-unknown                CLAP
   8  events-foreign-spaces            CLAP
   8  events-beyond-block              CLAP
   9  state-every-length               all
   9  state-every-byte-flipped         all
   9  state-noise                      all
   9  state-other-byte-order           all
   9  messages-strange-atoms           LV2
   9  messages-strange-objects         LV2
   9  messages-strange-sequences       LV2
   9  state-cut-short                  CLAP
   9  state-stream-fails               CLAP
  10  editor-sixty-openings            all
  10  threads-audio-automation-state   all
  10  threads-with-editor              all
  10  realtime-process                 all
  10  realtime-set-parameter           VST 2
  10  realtime-with-editor             all
  10  realtime-notes                   VST 2
  10  realtime-messages                LV2
  10  threads-mistaken                 CLAP
  10  realtime-events                  CLAP
  10  realtime-flush-and-reset         CLAP
  $ host completion --help
  Print a script that completes command lines in a shell
  Usage: mirelon-host completion [OPTIONS] SHELL
  
  Positionals:
    SHELL :{bash,zsh} REQUIRED  bash or zsh
  
  Options:
    -h,--help                   Print this help message and exit
  
