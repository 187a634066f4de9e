// QRecorder: every call becomes one record.
#include "render/qrecorder.h"

#include <cstring>

namespace {
QRecord &Add(std::vector<QRecord> &records, QRecordKind kind, QColor color = QColor()) {
  records.emplace_back();
  records.back().kind = kind;
  records.back().color = color;
  return records.back();
}
}  // namespace

void QRecorder::BeginPicture(QColor background) {
  records.clear();
  Add(records, QREC_BEGIN, background);
}

void QRecorder::ClipRect(const QRect &r) { Add(records, QREC_CLIP).rect = r; }

void QRecorder::ClipNone() { Add(records, QREC_NOCLIP); }

void QRecorder::Polyline(const QPointF *points, int n, const QStroke &stroke, int ox, int oy) {
  QRecord &r = Add(records, QREC_POLYLINE, stroke.color);
  r.stroke = stroke;
  for (int i = 0; i < n; i++) r.points.push_back({float(ox) + 0.5f + points[i].x, float(oy) + 0.5f + points[i].y});
}

void QRecorder::Segments(const QSegment *segments, int n, QColor color) {
  Add(records, QREC_SEGMENTS, color).segments.assign(segments, segments + (n > 0 ? n : 0));
}

void QRecorder::FillRect(const QRect &rect, QColor color) { Add(records, QREC_FILL, color).rect = rect; }

void QRecorder::DrawText(const char *text, int x, int y, QColor color) {
  QRecord &r = Add(records, QREC_TEXT, color);
  r.text = text;
  r.x = x;
  r.y = y;
}

int QRecorder::MeasureText(const char *text) const { return font ? int(strlen(text)) * GLYPH_WIDTH : 0; }

void QRecorder::DrawImage(const uint8_t *, int wid, int hgt, int x, int y) {
  Add(records, QREC_IMAGE).rect = QRect(x, y, wid, hgt);
}

std::vector<const QRecord *> QRecorder::Of(QRecordKind kind) const {
  std::vector<const QRecord *> out;
  for (const QRecord &r : records)
    if (r.kind == kind) out.push_back(&r);
  return out;
}

const QRecord *QRecorder::FindText(const std::string &part) const {
  for (const QRecord &r : records)
    if (r.kind == QREC_TEXT && r.text.find(part) != std::string::npos) return &r;
  return nullptr;
}
