// The window: a button with one handler.
unit mainform;

{$mode objfpc}{$H+}

interface

uses
  Classes, SysUtils, Forms, StdCtrls, work;

type
  TMainForm = class(TForm)
  private
    FTold: Boolean;
    procedure ButtonClicked(Sender: TObject);
    procedure Painted(Sender: TObject);
  public
    constructor Create(AOwner: TComponent); override;
  end;

var
  Main: TMainForm;

implementation

constructor TMainForm.Create(AOwner: TComponent);
var
  Button: TButton;
begin
  inherited CreateNew(AOwner, 0);
  SetBounds(100, 100, 480, 320);
  Caption := '订单';
  Button := TButton.Create(Self);
  Button.Parent := Self;
  Button.SetBounds(20, 20, 120, 32);
  Button.Caption := '结算';
  Button.OnClick := @ButtonClicked;
  OnPaint := @Painted;
end;

procedure TMainForm.ButtonClicked(Sender: TObject);
begin
  Caption := '结果 ' + IntToStr(SettleAll(10000001)); // 备注 20000001
end;

// The window shows from the first paint on.
procedure TMainForm.Painted(Sender: TObject);
begin
  if FTold then
    Exit;
  FTold := True;
  WriteLn('shown');
  Flush(Output);
  if ParamStr(1) = '--quit-after-show' then
    Application.Terminate;
end;

end.
