// The program: one window.
program project1;

{$mode objfpc}{$H+}

uses
  Interfaces, Forms, mainform;

begin
  Application.Initialize;
  Application.CreateForm(TMainForm, Main);
  Application.Run;
end.
