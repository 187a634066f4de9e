// QRecorder: a QRenderer that draws nothing and writes every call down, so
// tests can check what a picture draws without a window or a file. Its font
// is a fixed-width fake: every byte is GLYPH_WIDTH pixels wide.
#pragma once

#include <string>
#include <vector>

#include "render/qrenderer.h"

enum QRecordKind { QREC_BEGIN, QREC_CLIP, QREC_NOCLIP, QREC_POLYLINE, QREC_SEGMENTS, QREC_FILL, QREC_TEXT, QREC_IMAGE };

struct QRecord {
  QRecordKind kind = QREC_BEGIN;
  QColor color;
  QStroke stroke;               // polylines
  std::vector<QPointF> points;  // polylines, in canvas coordinates (pixel centre + 0.5)
  std::vector<QSegment> segments;
  QRect rect;        // clip, fill, image (x, y, wid, hgt)
  std::string text;  // text
  int x = 0, y = 0;  // text
};

class QRecorder : public QRenderer {
 public:
  static constexpr int GLYPH_WIDTH = 7, TEXT_HEIGHT = 14;
  explicit QRecorder(bool withFont = true) : font(withFont) {}

  void BeginPicture(QColor background) override;
  void ClipRect(const QRect &r) override;
  void ClipNone() override;
  void Polyline(const QPointF *points, int n, const QStroke &stroke, int ox, int oy) override;
  void Segments(const QSegment *segments, int n, QColor color) override;
  void FillRect(const QRect &r, QColor color) override;
  void DrawText(const char *text, int x, int y, QColor color) override;
  int MeasureText(const char *text) const override;
  bool HasFont() const override { return font; }
  int TextHeight() const override { return font ? TEXT_HEIGHT : 0; }
  QRect Bounds() const override { return bounds; }
  void SetBounds(const QRect &r) { bounds = r; }
  void DrawImage(const uint8_t *rgba, int wid, int hgt, int x, int y) override;

  const std::vector<QRecord> &Records() const { return records; }
  // The records of one kind, in order.
  std::vector<const QRecord *> Of(QRecordKind kind) const;
  // The first text record that contains `part`; null when none does.
  const QRecord *FindText(const std::string &part) const;
  void Reset() { records.clear(); }

 private:
  bool font;
  QRect bounds{0, 0, 910, 714};  // the window's default size
  std::vector<QRecord> records;
};
