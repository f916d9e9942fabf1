' A client of another kind: everything late bound and by name, arguments by reference. The object
' given as the application lacks every member, so being connected to it must stay silent.
Option Explicit

Class Application
  Public Name
End Class

Dim failures
failures = 0

Sub Check(step)
  If Err.Number <> 0 Then
    WScript.Echo step & ": " & Err.Number & " " & Err.Description
    failures = failures + 1
    Err.Clear
  End If
End Sub

Dim connect, host, custom
custom = Array()
Set host = New Application

On Error Resume Next
Set connect = CreateObject("Postrove.Connect")
Check "CreateObject"
connect.OnConnection host, 1, Nothing, custom
Check "OnConnection"
connect.OnStartupComplete custom
Check "OnStartupComplete"
connect.OnAddInsUpdate custom
Check "OnAddInsUpdate"
connect.OnConnection Nothing, 0, Nothing, custom
Check "OnConnection with Nothing"
connect.OnBeginShutdown custom
Check "OnBeginShutdown"
connect.OnDisconnection 0, custom
Check "OnDisconnection"

connect.OnBeginShutdown
Check "OnBeginShutdown without its argument"
connect.NoSuchMember
If Err.Number = 0 Then
  WScript.Echo "NoSuchMember was found"
  failures = failures + 1
End If
Err.Clear
Set connect = Nothing
Check "Release"

If failures > 0 Then WScript.Quit 1
WScript.Quit 7
