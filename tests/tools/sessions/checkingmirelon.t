Mirelon in all its formats, checked.

  $ . "$TESTDIR/begin"
  $ check mirelon.so
  pass   1  load-twice                         N s
  pass   1  load-time                          N s  N ms
  pass   1  load-memory                        N s  N KiB an instance
  pass   1  symbols-entry                      N s
  pass   1  symbols-leaked                     N s
  pass   2  identity-stable                    N s  Dravik Mirelon
  pass   2  programs-stable                    N s  1 programs
  pass   2  parameter-texts-stable             N s  9 parameters
  pass   2  parameter-values-in-range          N s
  pass   2  parameter-properties-stable        N s  9 described
  pass   3  audio-every-rate-and-block         N s  13 rates, 23 block sizes
  pass   3  audio-double-precision             N s
  pass   3  audio-changing-blocks              N s
  pass   3  audio-in-place                     N s
  pass   3  audio-silence                      N s
  pass   4  state-round-trip                   N s  692 bytes
  pass   4  state-fresh-instance               N s
  pass   4  state-with-editor                  N s
  pass   5  automation-every-block             N s
  pass   5  automation-holds                   N s
  skip   5  notes-played                       N s  takes no notes
  skip   5  notes-crowded                      N s  takes no notes
  pass   6  editor-opened-twice                N s
  pass   6  editor-in-two-instances            N s
  pass   6  editor-while-processing            N s
  pass   6  editor-before-audio                N s
  pass   7  suspend-resume-loop                N s
  pass   7  rate-change-while-running          N s
  pass   8  parameter-strange-values           N s
  pass   8  parameter-strange-indices          N s
  pass   8  parameter-random-bits              N s
  skip   8  notes-strange-bytes                N s  takes no notes
  skip   8  notes-strange-events               N s  takes no notes
  pass   9  state-every-length                 N s  0 to 2000 bytes
  pass   9  state-every-byte-flipped           N s  692 bytes flipped
  pass   9  state-noise                        N s  1 MiB, and 200 of the state's own size
  pass   9  state-other-byte-order             N s
  pass  10  editor-sixty-openings              N s
  pass  10  threads-audio-automation-state     N s  N blocks
  pass  10  threads-with-editor                N s  N blocks
  pass  10  realtime-process                   N s
  pass  10  realtime-set-parameter             N s
  pass  10  realtime-with-editor               N s
  skip  10  realtime-notes                     N s  takes no notes
  mirelon.so, level 10, seed 1: 39 passed, 0 failed, 0 warnings, 5 skipped
  $ check mirelon.clap
  pass   1  load-twice                         N s
  pass   1  load-time                          N s  N ms
  pass   1  load-memory                        N s  N KiB an instance
  pass   1  symbols-entry                      N s
  pass   1  symbols-leaked                     N s
  pass   1  entry-reloaded                     N s
  pass   1  entry-counted                      N s
  pass   1  extensions-unknown                 N s
  pass   2  identity-stable                    N s  Dravik Mirelon
  pass   2  programs-stable                    N s  1 programs
  pass   2  parameter-texts-stable             N s  9 parameters
  pass   2  parameter-values-in-range          N s
  pass   2  host-without-extensions            N s
  pass   2  host-without-one-extension         N s
  pass   2  instances-independent              N s
  pass   2  parameter-identifiers              N s  9 parameters
  pass   2  parameter-ranges                   N s
  pass   2  parameter-texts-read-back          N s
  pass   3  audio-every-rate-and-block         N s  13 rates, 23 block sizes
  pass   3  audio-changing-blocks              N s
  pass   3  audio-in-place                     N s
  pass   3  audio-silence                      N s
  pass   4  state-round-trip                   N s  692 bytes
  pass   4  state-fresh-instance               N s
  pass   4  state-with-editor                  N s
  pass   4  state-in-parts                     N s  692 bytes
  pass   5  automation-every-block             N s
  pass   5  automation-holds                   N s
  pass   5  parameter-set-and-read             N s
  pass   5  events-every-frame                 N s
  pass   5  events-unknown-types               N s
  pass   5  flush-without-audio                N s
  pass   6  editor-opened-twice                N s
  pass   6  editor-in-two-instances            N s
  pass   6  editor-while-processing            N s
  pass   7  suspend-resume-loop                N s
  pass   7  activation-loop                    N s
  pass   7  processing-loop                    N s
  pass   8  parameter-strange-values           N s
  pass   8  parameter-random-bits              N s
  pass   8  parameter-unknown                  N s
  pass   8  events-foreign-spaces              N s
  pass   8  events-beyond-block                N s
  pass   9  state-every-length                 N s  0 to 2000 bytes
  pass   9  state-every-byte-flipped           N s  692 bytes flipped
  pass   9  state-noise                        N s  1 MiB, and 200 of the state's own size
  pass   9  state-other-byte-order             N s
  pass   9  state-cut-short                    N s
  pass   9  state-stream-fails                 N s
  pass  10  editor-sixty-openings              N s
  pass  10  threads-audio-automation-state     N s  N blocks
  pass  10  threads-with-editor                N s  N blocks
  pass  10  realtime-process                   N s
  pass  10  realtime-with-editor               N s
  pass  10  threads-mistaken                   N s
  pass  10  realtime-events                    N s
  pass  10  realtime-flush-and-reset           N s
  mirelon.clap, level 10, seed 1: 57 passed, 0 failed, 0 warnings, 0 skipped
  $ check mirelon.lv2
  pass   1  load-twice                         N s
  pass   1  load-time                          N s  N ms
  pass   1  load-memory                        N s  N KiB an instance
  pass   1  symbols-entry                      N s
  pass   1  symbols-leaked                     N s
  pass   2  identity-stable                    N s  Dravik Mirelon
  pass   2  programs-stable                    N s  1 programs
  pass   2  parameter-texts-stable             N s  9 parameters
  pass   2  parameter-values-in-range          N s
  pass   3  audio-every-rate-and-block         N s  13 rates, 23 block sizes
  pass   3  audio-changing-blocks              N s
  pass   3  audio-in-place                     N s
  pass   3  audio-silence                      N s
  pass   4  state-round-trip                   N s  692 bytes
  pass   4  state-fresh-instance               N s
  pass   4  state-with-editor                  N s
  pass   5  automation-every-block             N s
  pass   5  automation-holds                   N s
  pass   6  editor-opened-twice                N s
  pass   6  editor-in-two-instances            N s
  pass   6  editor-while-processing            N s
  pass   7  suspend-resume-loop                N s
  pass   8  parameter-strange-values           N s
  pass   8  parameter-random-bits              N s
  pass   9  state-every-length                 N s  0 to 2000 bytes
  pass   9  state-every-byte-flipped           N s  692 bytes flipped
  pass   9  state-noise                        N s  1 MiB, and 200 of the state's own size
  pass   9  state-other-byte-order             N s
  pass   9  messages-strange-atoms             N s  980 atoms
  pass   9  messages-strange-objects           N s  2000 objects
  pass   9  messages-strange-sequences         N s  1000 sequences
  pass  10  editor-sixty-openings              N s
  pass  10  threads-audio-automation-state     N s  N blocks
  pass  10  threads-with-editor                N s  N blocks
  pass  10  realtime-process                   N s
  pass  10  realtime-with-editor               N s
  pass  10  realtime-messages                  N s  30 messages
  mirelon.lv2, level 10, seed 1: 37 passed, 0 failed, 0 warnings, 0 skipped
