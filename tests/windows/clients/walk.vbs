' A client that nobody of this system wrote walks the options page: it makes the control and the add-in by
' their names and calls what Outlook and the add-in would. Each line is compared with what is expected.
Option Explicit

Sub Say(text)
  WScript.Echo text
End Sub

Dim addin, page, folder, names, settings

Set addin = CreateObject("VexaAddin.Connect")
Say "path: " & addin.Utilities.App.Path
names = ""
For Each folder In addin.Session.Folders
  names = names & folder.Name & "; "
Next
Say "stores: " & names
Say "folders of the first: " & addin.Session.Folders(1).Folders.Count

Set settings = CreateObject("VexaAddin.RegSettings")
settings.Load 0, False, False
settings.LogLevel = 2
settings.ContactEntryIDs.Add "second"
settings.ContactEntryIDs.Add "first", , 1
Say "log level: " & settings.LogLevel & ", contacts: " & settings.ContactEntryIDs(1) & ", " & settings.ContactEntryIDs(2)

On Error Resume Next
settings.ContactEntryIDs.Remove 3
Say "error " & Err.Number & ": " & Err.Description & " from " & Err.Source
Err.Clear
addin.Session.GetFolderFromID "none", "none"
Say "error " & Hex(Err.Number) & ": " & Err.Description & " from " & Err.Source
Err.Clear
On Error GoTo 0

' The script host's own function: the language's wants a service of the host for objects that take a site,
' and not every host has it.
Set page = WScript.CreateObject("VexaControls.OutlookPropertiesPage")
On Error Resume Next
page.Initialize settings
Say "error " & Err.Number & ": " & Err.Description
Err.Clear
On Error GoTo 0
page.Initialize addin
Say "name: " & page.Name & ", dirty: " & page.PropertyPage_Dirty
page.SetDirty
Say "dirty: " & page.PropertyPage_Dirty
page.PropertyPage_Apply
Say "dirty after Apply: " & page.PropertyPage_Dirty
Say "the end"
