// Shapes on a drawing canvas.
#pragma once
#include "88_drawing_canvas.h"

// Design pixels, colours 0xBBGGRR; a line is at least one pixel wide. A shape with a negative width
// or height extends to the left or upwards. An outline lies on the outermost pixels of the shape,
// so that it frames the filled shape of the same numbers. Angles are degrees, clockwise from three
// o'clock. Points are x, y, x, y, ...
void VL_DrawCanvas_Line(HWND canvas, double x1, double y1, double x2, double y2, int color = 0,
                        double width = 1);
void VL_DrawCanvas_Rectangle(HWND canvas, double x, double y, double w, double h, int color = 0,
                             double width = 1);
void VL_DrawCanvas_FillRectangle(HWND canvas, double x, double y, double w, double h,
                                 int color = 0);
void VL_DrawCanvas_RoundRectangle(HWND canvas, double x, double y, double w, double h,
                                  double radius, int color = 0, double width = 1);
void VL_DrawCanvas_FillRoundRectangle(HWND canvas, double x, double y, double w, double h,
                                      double radius, int color = 0);
void VL_DrawCanvas_Ellipse(HWND canvas, double x, double y, double w, double h, int color = 0,
                           double width = 1);
void VL_DrawCanvas_FillEllipse(HWND canvas, double x, double y, double w, double h, int color = 0);
void VL_DrawCanvas_Arc(HWND canvas, double x, double y, double w, double h, double start,
                       double sweep, int color = 0, double width = 1);
void VL_DrawCanvas_Pie(HWND canvas, double x, double y, double w, double h, double start,
                       double sweep, int color = 0, double width = 1);
void VL_DrawCanvas_FillPie(HWND canvas, double x, double y, double w, double h, double start,
                           double sweep, int color = 0);
void VL_DrawCanvas_Polyline(HWND canvas, const VL_Array &points, int color = 0, double width = 1);
void VL_DrawCanvas_Polygon(HWND canvas, const VL_Array &points, int color = 0, double width = 1);
void VL_DrawCanvas_FillPolygon(HWND canvas, const VL_Array &points, int color = 0);
// A smooth line through the points.
void VL_DrawCanvas_Curve(HWND canvas, const VL_Array &points, int color = 0, double width = 1);
void VL_DrawCanvas_SetPixel(HWND canvas, double x, double y, int color = 0);
