' SpVoice as a script sees it, as far as this SAPI serves scripts: it does not list or choose voices for them, nor change
' the rate. Its script host ends with success after an error as well, so the last line tells that all of it ran.
Option Explicit

Const patient = 0, async = 1, purge = 2

Sub Expect(what, is_so)
    If is_so Then
        WScript.Echo "ok      " & what
    Else
        WScript.Echo "FAILED  " & what
        WScript.Quit 1
    End If
End Sub

Dim voice, number, following
Set voice = CreateObject("SAPI.SpVoice")

voice.Volume = 80
Expect "the volume is kept", voice.Volume = 80

number = voice.Speak("A script speaks, and waits until it was heard.", patient)
Expect "speech has a number", number >= 1
following = voice.Speak("This one does not wait.", async)
Expect "the next has the next", following = number + 1
number = voice.Speak("This one is in a hurry.", async + purge)
Expect "so has one that purges", number = following + 1
number = voice.Speak("The last one waits again.", patient)
Expect "and one that waits again", number = following + 2
WScript.Echo "ok      the script came to its end"
