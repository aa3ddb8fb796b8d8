What checks say of a plug-in that does one thing wrong, once: at the call whose number is
given.

  $ . "$TESTDIR/begin"
  $ failing() { # PLUGIN DEFECT CALLS CHECKS: those of all formats and of the plug-in's
  >   for name in $(host check --list | grep -E "$format" | awk '{print $2}' | grep -E "^($4)" | grep -vE 'editor|threads|realtime'); do
  >     for call in $3; do
  >       MIRELON_DEFECT=$2@$call check $1 --only $name | grep -vE '^(pass|skip)|failed, |again: '
  >     done
  >   done
  >   true
  > }

A VST 2 effect:

  $ format='(all|VST 2)$'
  $ failing good.so nan '2 40' 'audio-.*[^e]$|automation|notes-[pc]|suspend|rate|parameter-strange-v'
  FAIL   3  audio-every-rate-and-block         N s  put out something that is not a number, at 22050 Hz in blocks of 1
            while: processing at 22050 Hz in blocks of 1 frames
  FAIL   3  audio-every-rate-and-block         N s  put out something that is not a number, at 22050 Hz in blocks of 4096
            while: processing at 22050 Hz in blocks of 4096 frames
  FAIL   3  audio-double-precision             N s  put out something that is not a number, at 22050 Hz in blocks of 1
            while: processing at 22050 Hz in blocks of 1 frames
  FAIL   3  audio-double-precision             N s  put out something that is not a number, at 22050 Hz in blocks of 4096
            while: processing at 22050 Hz in blocks of 4096 frames
  FAIL   3  audio-changing-blocks              N s  put out something that is not a number, in a block of 618 below the announced size
            while: processing a block of 618 frames at 48000 Hz
  FAIL   3  audio-changing-blocks              N s  put out something that is not a number, in a block of 310 below the announced size
            while: processing a block of 310 frames at 48000 Hz
  FAIL   5  automation-every-block             N s  put out something that is not a number, in automated block 1
            while: setting every parameter in block 1
  FAIL   5  automation-every-block             N s  put out something that is not a number, in automated block 39
            while: setting every parameter in block 39
  FAIL   5  automation-holds                   N s  put out something that is not a number, after setting parameter 0
            while: setting parameter 0 to 1 while audio runs
  FAIL   5  notes-played                       N s  put out something that is not a number, with a phrase on channel 1
            while: playing phrases on channel 1
  FAIL   5  notes-played                       N s  put out something that is not a number, with a phrase on channel 3
            while: playing phrases on channel 3
  FAIL   5  notes-crowded                      N s  put out something that is not a number, with 512 events in a block
            while: sending 512 events in block 1
  FAIL   7  suspend-resume-loop                N s  put out something that is not a number, after resume 1
            while: suspending and resuming for time 1
  FAIL   7  suspend-resume-loop                N s  put out something that is not a number, after resume 39
            while: suspending and resuming for time 39
  warn   7  rate-change-while-running          N s  put out something that is not a number, after a change to 96000 Hz while running
            while: changing to 96000 Hz and blocks of 979 without suspending
  warn   7  rate-change-while-running          N s  put out something that is not a number, after a change to 48000 Hz while running
            while: changing to 48000 Hz and blocks of 387 without suspending
  warn   8  parameter-strange-values           N s  put out something that is not a number, with ordinary values after strange ones
            while: setting ordinary values again
  $ failing good.so state-refused '1 3' state
  FAIL   4  state-round-trip                   N s  brings parameter 0 back as 0.803211 ("x") where it was 0.113210 ("x")
            while: given back its own state of 20 bytes
  FAIL   4  state-fresh-instance               N s  brings parameter 0 back as 0.5 ("x") where it was 0.113210 ("x")
            while: given back its own state of 20 bytes
  $ failing good.so value-moves '3 9' 'programs|parameter|automation|state-[rfeo]'
  FAIL   2  parameter-values-in-range          N s  parameter 1 changes without being set
            while: asking for the value of parameter 1
  FAIL   4  state-round-trip                   N s  brings parameter 2 back as 0.734431 ("x") where it was 0.3125 ("x")
            while: given back its own state of 20 bytes
  FAIL   5  automation-holds                   N s  parameter 0 drifts from 0.3125 to 1 while audio runs
            while: setting parameter 0 to 1 while audio runs
  FAIL   5  automation-holds                   N s  parameter 2 drifts from 0.3125 to 0 while audio runs
            while: setting parameter 2 to 0 while audio runs
  warn   8  parameter-strange-indices          N s  parameter 2 is moved by an index that no parameter has
            while: setting parameter -2147483648, which it does not have

A CLAP plug-in:

  $ format='(all|CLAP)$'
  $ failing test.clap process-error '2 40' 'host|instances|parameter-set|events|flush|activation|processing'
  FAIL   2  host-without-extensions            N s  says that it cannot process, in a host without extensions
            while: processing in a host without extensions
  FAIL   2  host-without-one-extension         N s  says that it cannot process, in a host without clap.params
            while: processing in a host without clap.params
  FAIL   2  host-without-one-extension         N s  says that it cannot process, in a host without clap.state
            while: processing in a host without clap.state
  FAIL   2  instances-independent              N s  says that it cannot process, as one of two instances
            while: processing in one instance alone
  FAIL   2  instances-independent              N s  says that it cannot process, as one of two instances
            while: processing in one instance alone
  FAIL   5  parameter-set-and-read             N s  says that it cannot process, with parameter 10 (Gain) at 0.02
            while: setting parameter 10 (Gain) to 0.02 in a block
  FAIL   5  events-every-frame                 N s  says that it cannot process, with four events at frame 20
            while: processing 64 frames with four events at frame 20 for parameter 10 (Gain)
  FAIL   5  events-unknown-types               N s  says that it cannot process, with an event of space 0 and type 64
            while: sending an event of space 0, type 64 and 56 bytes
  FAIL   7  activation-loop                    N s  says that it cannot process, after activation 1 at 96000 Hz with blocks of 1223
            while: activating it for time 1, at 96000 Hz with blocks of 1223 frames
  FAIL   7  activation-loop                    N s  says that it cannot process, after activation 33 at 192000 Hz with blocks of 1744
            while: activating it for time 33, at 192000 Hz with blocks of 1744 frames
  FAIL   7  processing-loop                    N s  says that it cannot process, after a reset or an activation
  FAIL   7  processing-loop                    N s  says that it cannot process, started for time 37
            while: stopping and starting it for time 37
  warn   8  events-foreign-spaces              N s  says that it cannot process, with an event of space 1 and type 5
            while: sending an event of space 1, type 5 and 56 bytes
  warn   8  events-foreign-spaces              N s  says that it cannot process, with an event of space 32768 and type 5
            while: sending an event of space 32768, type 5 and 16 bytes
  warn   8  events-beyond-block                N s  says that it cannot process, with an event at frame 65 of 64
            while: processing 64 frames with an event for parameter 10 (Gain) at frame 65
  $ failing test.clap load-refused '1 3' 'host-without-ext|instances|state'
  FAIL   2  host-without-extensions            N s  refuses its own state in a host without extensions
            while: giving its state back in a host without extensions
  FAIL   4  state-round-trip                   N s  brings parameter 0 back as 0.803211 ("1.6064") where it was 0.113210 ("0.2264")
            while: given back its own state of 1000 bytes
  FAIL   4  state-fresh-instance               N s  brings parameter 0 back as 0.5 ("1.0000") where it was 0.113210 ("0.2264")
            while: given back its own state of 1000 bytes
  FAIL   4  state-in-parts                     N s  refuses its own state of 1000 bytes from a stream that gives 1 bytes at a time
            while: loading its state of 1000 bytes from a stream that gives 1 bytes at a time
  FAIL   4  state-in-parts                     N s  refuses its own state of 1000 bytes from a stream that gives 691 bytes at a time
            while: loading its state of 1000 bytes from a stream that gives 691 bytes at a time
  $ failing test.clap save-refused '1 3' 'host-without-ext|instances|state-[ics]'
  FAIL   2  instances-independent              N s  has another state when another instance is given one
            while: giving a state to another instance
  FAIL   2  instances-independent              N s  has another state when another instance is given one
            while: giving a state to another instance
  FAIL   4  state-in-parts                     N s  does not save its state
            while: saving its state
  FAIL   4  state-in-parts                     N s  does not save its state through a stream that takes 1 bytes at a time
            while: saving its state through a stream that takes 1 bytes at a time
  warn   9  state-cut-short                    N s  does not save its state
            while: saving its state
  warn   9  state-stream-fails                 N s  does not save its state
            while: saving its state
  $ failing test.clap start-refused 2 'activation|processing|flush'
  FAIL   5  flush-without-audio                N s  cannot be activated or started at 48000 Hz with blocks of 64 frames
            while: calling flush() without events while it is not active
  FAIL   7  activation-loop                    N s  cannot be activated or started at 96000 Hz with blocks of 1223 frames
            while: activating it for time 1, at 96000 Hz with blocks of 1223 frames
  FAIL   7  processing-loop                    N s  cannot be activated or started at 48000 Hz with blocks of 256 frames
  $ failing test.clap value-moves '4 9' 'instances|parameter-[itsu]|events|flush|activation|processing'
  FAIL   2  instances-independent              N s  parameter 10 (Gain) moves from 1 to 0.5 when another instance is set
            while: setting parameters of another instance
  FAIL   2  instances-independent              N s  parameter 30 (Tone) moves from 0 to -6 when another instance is set
            while: setting parameters of another instance
  FAIL   5  events-unknown-types               N s  parameter 10 (Gain) moves from 1 to 0.5 with an event of space 0 and type 64, which sets no parameter
            while: sending an event of space 0, type 64 and 56 bytes
  FAIL   5  events-unknown-types               N s  parameter 30 (Tone) moves from -6 to 0 with an event of space 0 and type 64, which sets no parameter
            while: sending an event of space 0, type 64 and 56 bytes
  FAIL   7  activation-loop                    N s  parameter 10 (Gain) moves from 0.226420 to 0.113210 with an activation
            while: activating it for time 0, at 44100 Hz with blocks of 917 frames
  FAIL   7  activation-loop                    N s  parameter 30 (Tone) moves from 5.626356 to -3.186821 with an activation
            while: activating it for time 1, at 96000 Hz with blocks of 1223 frames
  FAIL   7  processing-loop                    N s  parameter 10 (Gain) moves from 0.226420 to 0.113210 with a reset
            while: stopping and starting it for time 0
  FAIL   7  processing-loop                    N s  parameter 30 (Tone) moves from 5.626356 to -3.186821 with a start
            while: stopping and starting it for time 1
  warn   8  parameter-unknown                  N s  parameter 10 (Gain) moves from 1 to 0.5 when the parameter 3 is set, which there is not
            while: setting the parameter 3, which there is not
  warn   8  parameter-unknown                  N s  parameter 30 (Tone) moves from 0 to -6 when the parameter 1003 is set, which there is not
            while: setting the parameter 1003, which there is not
  warn   8  events-foreign-spaces              N s  parameter 10 (Gain) moves from 1 to 0.5 with an event of space 1 and type 5, which sets no parameter
            while: sending an event of space 1, type 5 and 56 bytes
  warn   8  events-foreign-spaces              N s  parameter 30 (Tone) moves from -6 to 0 with an event of space 1 and type 5, which sets no parameter
            while: sending an event of space 1, type 5 and 56 bytes
