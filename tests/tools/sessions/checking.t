What is found wrong with plug-ins.

  $ . "$TESTDIR/begin"

Good ones:

  $ check good.so
  pass   1  load-twice                         N s
  pass   1  load-time                          N s  N ms
  pass   1  load-memory                        N s  N KiB an instance
  pass   1  symbols-entry                      N s
  pass   1  symbols-leaked                     N s
  pass   2  identity-stable                    N s  test effect
  pass   2  programs-stable                    N s  2 programs
  pass   2  parameter-texts-stable             N s  3 parameters
  pass   2  parameter-values-in-range          N s
  pass   2  parameter-properties-stable        N s  3 described
  pass   3  audio-every-rate-and-block         N s  13 rates, 23 block sizes
  pass   3  audio-double-precision             N s
  pass   3  audio-changing-blocks              N s
  pass   3  audio-in-place                     N s
  pass   3  audio-silence                      N s
  pass   4  state-round-trip                   N s  20 bytes
  pass   4  state-fresh-instance               N s
  pass   4  state-with-editor                  N s
  pass   5  automation-every-block             N s
  pass   5  automation-holds                   N s
  pass   5  notes-played                       N s
  pass   5  notes-crowded                      N s
  pass   6  editor-opened-twice                N s
  pass   6  editor-in-two-instances            N s
  pass   6  editor-while-processing            N s
  pass   6  editor-before-audio                N s
  pass   7  suspend-resume-loop                N s
  pass   7  rate-change-while-running          N s
  pass   8  parameter-strange-values           N s
  pass   8  parameter-strange-indices          N s
  pass   8  parameter-random-bits              N s
  pass   8  notes-strange-bytes                N s
  pass   8  notes-strange-events               N s
  pass   9  state-every-length                 N s  0 to 2000 bytes
  pass   9  state-every-byte-flipped           N s  20 bytes flipped
  pass   9  state-noise                        N s  1 MiB, and 200 of the state's own size
  pass   9  state-other-byte-order             N s
  pass  10  editor-sixty-openings              N s
  pass  10  threads-audio-automation-state     N s  N blocks
  pass  10  threads-with-editor                N s  N blocks
  pass  10  realtime-process                   N s
  pass  10  realtime-set-parameter             N s
  pass  10  realtime-with-editor               N s
  pass  10  realtime-notes                     N s
  good.so, level 10, seed 1: 44 passed, 0 failed, 0 warnings, 0 skipped
  $ check test.clap
  pass   1  load-twice                         N s
  pass   1  load-time                          N s  N ms
  pass   1  load-memory                        N s  N KiB an instance
  pass   1  symbols-entry                      N s
  pass   1  symbols-leaked                     N s
  pass   1  entry-reloaded                     N s
  pass   1  entry-counted                      N s
  pass   1  extensions-unknown                 N s
  pass   2  identity-stable                    N s  Test
  pass   2  programs-stable                    N s  0 programs
  pass   2  parameter-texts-stable             N s  3 parameters
  pass   2  parameter-values-in-range          N s
  pass   2  host-without-extensions            N s
  pass   2  host-without-one-extension         N s
  pass   2  instances-independent              N s
  pass   2  parameter-identifiers              N s  3 parameters
  pass   2  parameter-ranges                   N s
  pass   2  parameter-texts-read-back          N s
  pass   3  audio-every-rate-and-block         N s  13 rates, 23 block sizes
  pass   3  audio-changing-blocks              N s
  pass   3  audio-in-place                     N s
  pass   3  audio-silence                      N s
  pass   4  state-round-trip                   N s  1000 bytes
  pass   4  state-fresh-instance               N s
  skip   4  state-with-editor                  N s  has no editor
  pass   4  state-in-parts                     N s  1000 bytes
  pass   5  automation-every-block             N s
  pass   5  automation-holds                   N s
  pass   5  parameter-set-and-read             N s
  pass   5  events-every-frame                 N s
  pass   5  events-unknown-types               N s
  pass   5  flush-without-audio                N s
  skip   6  editor-opened-twice                N s  has no editor
  skip   6  editor-in-two-instances            N s  has no editor
  skip   6  editor-while-processing            N s  has no editor
  pass   7  suspend-resume-loop                N s
  pass   7  activation-loop                    N s
  pass   7  processing-loop                    N s
  pass   8  parameter-strange-values           N s
  pass   8  parameter-random-bits              N s
  pass   8  parameter-unknown                  N s
  pass   8  events-foreign-spaces              N s
  pass   8  events-beyond-block                N s
  pass   9  state-every-length                 N s  0 to 2000 bytes
  pass   9  state-every-byte-flipped           N s  1000 bytes flipped
  pass   9  state-noise                        N s  1 MiB, and 200 of the state's own size
  pass   9  state-other-byte-order             N s
  pass   9  state-cut-short                    N s
  pass   9  state-stream-fails                 N s
  skip  10  editor-sixty-openings              N s  has no editor
  pass  10  threads-audio-automation-state     N s  N blocks
  skip  10  threads-with-editor                N s  has no editor
  pass  10  realtime-process                   N s
  skip  10  realtime-with-editor               N s  has no editor
  pass  10  threads-mistaken                   N s
  pass  10  realtime-events                    N s
  pass  10  realtime-flush-and-reset           N s
  test.clap, level 10, seed 1: 50 passed, 0 failed, 0 warnings, 7 skipped
  $ check amplifier.lv2
  pass   1  load-twice                         N s
  pass   1  load-time                          N s  N ms
  pass   1  load-memory                        N s  N KiB an instance
  pass   1  symbols-entry                      N s
  pass   1  symbols-leaked                     N s
  pass   2  identity-stable                    N s  Test Amplifier
  pass   2  programs-stable                    N s  2 programs
  pass   2  parameter-texts-stable             N s  5 parameters
  pass   2  parameter-values-in-range          N s
  pass   3  audio-every-rate-and-block         N s  13 rates, 23 block sizes
  pass   3  audio-changing-blocks              N s
  pass   3  audio-in-place                     N s
  pass   3  audio-silence                      N s
  skip   4  state-round-trip                   N s  keeps no state of its own
  skip   4  state-fresh-instance               N s  keeps no state of its own
  skip   4  state-with-editor                  N s  has no editor
  pass   5  automation-every-block             N s
  pass   5  automation-holds                   N s
  skip   6  editor-opened-twice                N s  has no editor
  skip   6  editor-in-two-instances            N s  has no editor
  skip   6  editor-while-processing            N s  has no editor
  pass   7  suspend-resume-loop                N s
  pass   8  parameter-strange-values           N s
  pass   8  parameter-random-bits              N s
  skip   9  state-every-length                 N s  keeps no state of its own
  skip   9  state-every-byte-flipped           N s  keeps no state of its own
  skip   9  state-noise                        N s  keeps no state of its own
  skip   9  state-other-byte-order             N s  keeps no state of its own
  pass   9  messages-strange-atoms             N s  980 atoms
  pass   9  messages-strange-objects           N s  2000 objects
  pass   9  messages-strange-sequences         N s  1000 sequences
  skip  10  editor-sixty-openings              N s  has no editor
  pass  10  threads-audio-automation-state     N s  N blocks
  skip  10  threads-with-editor                N s  has no editor
  pass  10  realtime-process                   N s
  skip  10  realtime-with-editor               N s  has no editor
  pass  10  realtime-messages                  N s  300 messages
  amplifier.lv2, level 10, seed 1: 24 passed, 0 failed, 0 warnings, 13 skipped

Bad ones:

  $ MIRELON_DEFECT=index-wraps check good.so --only parameter-strange-indices
  warn   8  parameter-strange-indices          N s  parameter 0 is moved by an index that no parameter has
            while: setting parameter -2147483648, which it does not have
            again: mirelon-host check good.so --only parameter-strange-indices --seed 1
  good.so, level 10, seed 1: 0 passed, 0 failed, 1 warnings, 0 skipped
  $ MIRELON_DEFECT=nan-crash check good.so --only parameter-random-bits --only parameter-strange-values
  warn   8  parameter-strange-values           N s  dies: Aborted (SIGABRT)
            while: setting parameter 0 to nan
            printed: nan is no value
            again: mirelon-host check good.so --only parameter-strange-values --seed 1
  warn   8  parameter-random-bits              N s  dies: Aborted (SIGABRT)
            while: setting parameter 0 to -nan
            printed: nan is no value
            again: mirelon-host check good.so --only parameter-random-bits --seed 1
  good.so, level 10, seed 1: 0 passed, 0 failed, 2 warnings, 0 skipped
  $ MIRELON_DEFECT=drift check good.so --only automation-holds
  FAIL   5  automation-holds                   N s  parameter 0 drifts from 1 to 0.899999 while audio runs
            while: setting parameter 0 to 1 while audio runs
            again: mirelon-host check good.so --only automation-holds --seed 1
  good.so, level 10, seed 1: 0 passed, 1 failed, 0 warnings, 0 skipped
  [1]
  $ MIRELON_DEFECT=switches check good.so --only state-round-trip
  pass   4  state-round-trip                   N s  20 bytes
  good.so, level 10, seed 1: 1 passed, 0 failed, 0 warnings, 0 skipped
  $ MIRELON_DEFECT=switches check good.so --only state-round-trip --strict
  pass   4  state-round-trip                   N s  20 bytes
  good.so, level 10, seed 1: 1 passed, 0 failed, 0 warnings, 0 skipped
  $ MIRELON_DEFECT=realtime-double check good.so --only realtime-process | sed 's/, first from.*//'
  FAIL  10  realtime-process                   N s  process with doubles makes malloc calls (200 times
            while: processing in blocks of 1024 and setting parameters in between
            again: mirelon-host check good.so --only realtime-process --seed 1
  good.so, level 10, seed 1: 0 passed, 1 failed, 0 warnings, 0 skipped
  $ MIRELON_DEFECT=window-stays check good.so --only editor-opened-twice
  FAIL   6  editor-opened-twice                N s  leaves its window behind when it is closed
            while: closing the editor
            again: mirelon-host check good.so --only editor-opened-twice --seed 1
  good.so, level 10, seed 1: 0 passed, 1 failed, 0 warnings, 0 skipped
  [1]
  $ MIRELON_DEFECT=resume-hangs check good.so --only suspend-resume-loop --timeout 1
  FAIL   7  suspend-resume-loop                N s  still runs after 1 s
            while: open and nothing else yet
            again: mirelon-host check good.so --only suspend-resume-loop --seed 1
  good.so, level 10, seed 1: 0 passed, 1 failed, 0 warnings, 0 skipped
  [1]
  $ MIRELON_DEFECT=index-wraps check good.so --level 2 --json
  {
    "version": 1,
    "seed": 1,
    "plugins": [
      {
        "plugin": "good.so",
        "level": 2,
        "checks": [
          {
            "name": "load-twice",
            "level": 1,
            "result": "passed",
            "seconds": N,
            "note": ""
          },
          {
            "name": "load-time",
            "level": 1,
            "result": "passed",
            "seconds": N,
            "note": "N ms"
          },
          {
            "name": "load-memory",
            "level": 1,
            "result": "passed",
            "seconds": N,
            "note": "N KiB an instance"
          },
          {
            "name": "symbols-entry",
            "level": 1,
            "result": "passed",
            "seconds": N,
            "note": ""
          },
          {
            "name": "symbols-leaked",
            "level": 1,
            "result": "passed",
            "seconds": N,
            "note": ""
          },
          {
            "name": "identity-stable",
            "level": 2,
            "result": "passed",
            "seconds": N,
            "note": "test effect"
          },
          {
            "name": "programs-stable",
            "level": 2,
            "result": "passed",
            "seconds": N,
            "note": "2 programs"
          },
          {
            "name": "parameter-texts-stable",
            "level": 2,
            "result": "passed",
            "seconds": N,
            "note": "3 parameters"
          },
          {
            "name": "parameter-values-in-range",
            "level": 2,
            "result": "passed",
            "seconds": N,
            "note": ""
          },
          {
            "name": "parameter-properties-stable",
            "level": 2,
            "result": "passed",
            "seconds": N,
            "note": "3 described"
          }
        ],
        "passed": 10,
        "failed": 0,
        "warnings": 0,
        "skipped": 0
      }
    ],
    "refused": []
  }
  $ check leaking.so entryless.so --level 1 --skip load-time
  pass   1  load-twice                         N s
  pass   1  load-memory                        N s  N KiB an instance
  pass   1  symbols-entry                      N s
  warn   1  symbols-leaked                     N s  exports 1 names besides its entry points, such as leakedHelper
            again: mirelon-host check leaking.so --only symbols-leaked --seed 1
  leaking.so, level 1, seed 1: 3 passed, 0 failed, 1 warnings, 0 skipped
  ! mirelon-host: warning: entryless.so: not a VST 2 plug-in (it exports no VSTPluginMain)
  ! mirelon-host: nothing could be checked in 1 of 2 files
  [2]
  $ check good.so missing.so --level 1 --json
  {
    "version": 1,
    "seed": 1,
    "plugins": [
      {
        "plugin": "good.so",
        "level": 1,
        "checks": [
          {
            "name": "load-twice",
            "level": 1,
            "result": "passed",
            "seconds": N,
            "note": ""
          },
          {
            "name": "load-time",
            "level": 1,
            "result": "passed",
            "seconds": N,
            "note": "N ms"
          },
          {
            "name": "load-memory",
            "level": 1,
            "result": "passed",
            "seconds": N,
            "note": "N KiB an instance"
          },
          {
            "name": "symbols-entry",
            "level": 1,
            "result": "passed",
            "seconds": N,
            "note": ""
          },
          {
            "name": "symbols-leaked",
            "level": 1,
            "result": "passed",
            "seconds": N,
            "note": ""
          }
        ],
        "passed": 5,
        "failed": 0,
        "warnings": 0,
        "skipped": 0
      }
    ],
    "refused": [
      "missing.so: no such plug-in file"
    ]
  }
  ! mirelon-host: warning: missing.so: no such plug-in file
  ! mirelon-host: nothing could be checked in 1 of 2 files
  [2]

Without a display:

  $ DISPLAY= check good.so --only editor-opened-twice
  skip   6  editor-opened-twice                N s  there is no X display
  good.so, level 10, seed 1: 0 passed, 0 failed, 0 warnings, 1 skipped
  ! mirelon-host: nothing could be checked
  [2]

What cannot be done:

  $ check missing.so
  ! mirelon-host: missing.so: no such plug-in file
  [2]
  $ check tones.wav
  ! mirelon-host: tones.wav: not a plug-in (tones.wav: invalid ELF header)
  [2]
  $ check good.so --only load-twiec
  ! mirelon-host: there is no check called load-twiec (--list shows them)
  [2]
  $ check good.so --skip load-twiec
  ! mirelon-host: there is no check called load-twiec (--list shows them)
  [2]
  $ check good.so --level 11
  ! mirelon-host: --level: Value 11 not in range 1 to 10 (--help shows how)
  [2]
  $ check good.so --timeout 0
  ! mirelon-host: --timeout: Value 0 not in range 1 to 86400 (--help shows how)
  [2]
  $ check good.so --in-process --only load-twice --only realtime-process
  pass   1  load-twice                         N s
  skip  10  realtime-process                   N s  the interposing library is not in the process
  good.so, level 10, seed 1: 1 passed, 0 failed, 0 warnings, 1 skipped
