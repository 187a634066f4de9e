// What the controls (buttons, sliders, check boxes, radios, labels, the
// title bar) share: their colours, the focus ring, the ink of text that
// stands on the background, automatic tab numbers and text placement.
//
// The controls sit on the program's light background or on a dialog's dark
// body; faces and fields are opaque and look the same on both, while text
// drawn straight onto the background takes its ink from where it stands.
#pragma once

#include "render/qcolor.h"
#include "render/qrect.h"

class QCanvas;
class QPushLogic;
class QWindow;
struct QEvent;

namespace qlook {
// Push faces.
constexpr QColor FACE(224, 227, 231);
constexpr QColor FACE_HOVER(238, 242, 245);
constexpr QColor FACE_PRESSED(188, 198, 206);
constexpr QColor FACE_DISABLED(210, 212, 215);
constexpr QColor FACE_LIGHT(250, 251, 252);   // top bevel line of a raised face
constexpr QColor FACE_SHADOW(180, 185, 191);  // bottom bevel line
// Frames of faces and fields.
constexpr QColor FRAME(104, 112, 122);
constexpr QColor FRAME_DISABLED(168, 172, 177);
// The inside of check boxes, radios and slider grooves.
constexpr QColor FIELD(252, 252, 253);
constexpr QColor FIELD_PRESSED(214, 222, 228);
constexpr QColor FIELD_DISABLED(226, 228, 230);
// Marks: the check, the radio dot, the slider's filled part and knob.
constexpr QColor ACCENT(32, 104, 124);
constexpr QColor ACCENT_HOT(48, 136, 160);
constexpr QColor ACCENT_PALE(176, 214, 224);
constexpr QColor MARK_DISABLED(150, 155, 160);
// The keyboard focus.
constexpr QColor FOCUS(0, 102, 204);
// Text on faces and fields, and on the light and dark backgrounds.
constexpr int INK_GREY = 26;            // grey value of text and symbols on a face
constexpr int INK_GREY_DISABLED = 146;  // the same, disabled
constexpr QColor INK_ON_LIGHT(26, 30, 34);
constexpr QColor INK_ON_DARK(232, 236, 240);
constexpr QColor INK_DISABLED_ON_LIGHT(146, 150, 155);
constexpr QColor INK_DISABLED_ON_DARK(128, 134, 140);
}  // namespace qlook

// The next free tab number: controls that take the focus number themselves
// in the order they are made, so Tab follows the order of construction
// unless the program sets its own numbers.
int QControlNextTab();

// True when `w` stands on a dialog's dark body (it or an ancestor is a
// QDialog).
bool QControlOnDark(const QWindow *w);
// The colour of text drawn straight onto the background behind `w`.
QColor QControlInk(const QWindow *w);

// A ring in the focus colour just inside `r`: two pixels round a face or
// field, one round the text of a check box or radio.
void QControlFocusRing(QCanvas *cv, const QRect &r, int thickness = 2);
// A one-line text's top when centred vertically in `r`.
int QControlTextTop(const QCanvas *cv, const QRect &r);
// Text of a control. A text wider than its room is first set tighter (its
// glyphs stay as they are, the spaces between them shrink, down to
// QCONTROL_TEXT_MIN_SQUEEZE of the normal advance); what still does not fit
// is clipped to the room unless QCONTROL_TEXT_OVERFLOW is given. With
// QCONTROL_TEXT_KEEPCLIP the caller's clip rectangle stays as it is.
// Nothing is drawn without a font or text.
constexpr float QCONTROL_TEXT_MIN_SQUEEZE = 0.85f;
enum : unsigned { QCONTROL_TEXT_OVERFLOW = 0x1, QCONTROL_TEXT_KEEPCLIP = 0x2 };
// The width `text` takes when set into `avail` pixels.
int QControlTextWidth(const QCanvas *cv, const char *text, int avail);
// Left-aligned at (x, y); the room ends at the right edge of `room`.
void QControlText(QCanvas *cv, const char *text, int x, int y, const QRect &room, unsigned flags = 0);
// Centred horizontally in `room` (from its left edge when too wide).
void QControlTextCentred(QCanvas *cv, const char *text, int y, const QRect &room, unsigned flags = 0);
// A list or text field: filled, framed, and ringed while it has the focus.
void QControlField(QCanvas *cv, const QRect &r, bool focused);
// The caption of a check box or radio from `x` to the right edge of `r`,
// with the one-pixel focus ring round the text while `w` has the focus.
void QControlMarkCaption(QCanvas *cv, const QWindow *w, const char *text, int x, const QRect &r);

// Mouse events of a push control (button, radio): its press logic follows
// them over the window's rectangle. True when `ev` is a mouse event; then
// *clicked tells whether it completed a click and *consumed whether the
// window keeps the event (left-button presses and releases).
bool QControlPushMouse(const QWindow *w, QPushLogic &push, const QEvent &ev, bool *clicked, bool *consumed);
