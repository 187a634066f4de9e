// Drawing of a horizontal slider: groove, filled part, knob, focus ring.
#include "ui/qcanvas.h"
#include "ui/qslider.h"

QRect QSliderKnob(const QSlider &s) {
  const QRect &t = s.Map().track;
  return QRect(s.Map().ValueToX(s.Value()) - 4, t.y - 2, 8, t.hgt + 4);
}

void QSliderDraw(QCanvas &cv, const QSlider &s, bool focused) {
  const QRect &t = s.Map().track;
  int mid = t.y + t.hgt / 2;
  int vx = s.Map().ValueToX(s.Value());
  // Groove, then the part up to the value
  cv.SetColor(QCANVAS_PX_MIDGRAY);
  cv.Rectfill(t.x, mid - 2, t.wid, 4);
  cv.SetColor(QCANVAS_PX_TEAL);
  cv.Rectfill(t.x, mid - 2, vx - t.x + 1, 4);
  // Knob
  cv.SetColor(s.State() == QSliderState::Dragging ? QCANVAS_PX_WHITE : QCANVAS_PX_LTGRAY);
  cv.Rectfill(QSliderKnob(s));
  if (focused) {
    cv.SetColor(QCANVAS_PX_WHITE);
    cv.Rectline(t.x - 6, t.y - 4, t.wid + 12, t.hgt + 8);
  }
}
