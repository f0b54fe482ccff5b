# tests/pty/common.tcl -- procedures shared by the pseudo-terminal tests.
#
# A test sources this file and calls start_session, then say and see, then end_session or see_end. The first
# thing that is not as expected fails the test. The session runs in a directory of its own, with a start-up
# file that holds the RAM size and nothing more.
#
#   start_session ?file ...?       start the program and wait for its first prompt; the arguments are pairs of
#                                  name and content of files to be there
#   say TEXT                       type TEXT and Return
#   press BYTES                    type BYTES as they are: \003 is Ctrl-C, \004 is Ctrl-D
#   see TEXT ?what?                wait until TEXT is written; line ends in it match those of the terminal
#   see_pattern REGEXP ?what?      the same with a regular expression
#   see_prompt ?TEXT?              wait for a line end and the prompt, and for nothing after it
#   see_nothing_of TEXT SECONDS    fail when TEXT is written within SECONDS
#   end_session                    type &q and see the end
#   see_end ?STATUS?               wait until the program has ended; its exit status must be STATUS (0)

set program [file normalize [lindex $argv 0]]
set timeout 20
log_user 0
match_max 100000

proc fail {message} {
    global directory
    puts "FAIL: $message"
    if {[info exists directory] && [file exists $directory.log]} {
        catch {log_file}
        puts "---- the session so far"
        puts [exec cat -A $directory.log]
    }
    clean_up
    exit 1
}

proc clean_up {} {
    global directory
    catch {close}
    catch {log_file}
    catch {file delete -force $directory $directory.log}
}

proc start_session {args} {
    global directory program spawn_id
    set directory [exec mktemp -d -t kelmar-pty.XXXXXX]
    foreach {name content} [concat [list kelstart.txt "4000\n"] $args] {
        set f [open $directory/$name w]
        puts -nonewline $f $content
        close $f
    }
    cd $directory
    log_file -noappend -a $directory.log
    spawn -noecho $program
    see_prompt
}

proc at_terminal {text} { return [string map [list "\n" "\r\n"] $text] }

proc see {text {what ""}} {
    if {$what eq ""} { set what $text }
    expect {
        -ex [at_terminal $text] { return }
        timeout { fail "waited for: $what" }
        eof { fail "the session ended before: $what" }
    }
}

proc see_pattern {pattern {what ""}} {
    if {$what eq ""} { set what $pattern }
    expect {
        -re $pattern { return $expect_out(0,string) }
        timeout { fail "waited for: $what" }
        eof { fail "the session ended before: $what" }
    }
}

proc see_prompt {{prompt ">"}} {
    regsub -all {[][*+?(){}.^$|\\]} $prompt {\\&} quoted
    see_pattern "\n$quoted\$" "the prompt $prompt"
}

proc see_nothing_of {text seconds} {
    global timeout
    set usual $timeout
    set timeout $seconds
    expect {
        -ex [at_terminal $text] { fail "there should be no: $text" }
        timeout { }
        eof { }
    }
    set timeout $usual
}

proc say {text} { send -- "$text\r" }
proc press {bytes} { send -- $bytes }

proc end_session {} {
    say "&q"
    see "\n bye\n"
    see_end
}

proc see_end {{status 0}} {
    expect {
        eof { }
        timeout { fail "the session did not end" }
    }
    set ended [wait]
    if {[llength $ended] > 4} { fail "the session was killed: [lrange $ended 4 end]" }
    if {[lindex $ended 3] != $status} { fail "exit status [lindex $ended 3], not $status" }
    clean_up
    exit 0
}
