// Per-wheel undo and redo stacks of whole tyres.
#include "tool/tyrehistory.h"

#include <deque>
#include <vector>

#include "tyre/ktyre.h"

namespace {

struct WheelHistory {
  std::deque<KTyreParams> undo;  // the tyre before each step, oldest first
  std::vector<KTyreParams> redo; // the tyre after each undone step, latest last
  int lastField = -1;            // field of the last step while edits fold into it
};

WheelHistory g_wheels[CAR_WHEELS];

WheelHistory *Of(int wheel) { return wheel >= 0 && wheel < CAR_WHEELS ? &g_wheels[wheel] : nullptr; }

void Push(WheelHistory *h, const KTyreParams &before) {
  h->undo.push_back(before);
  while (h->undo.size() > size_t(HISTORY_DEPTH)) h->undo.pop_front();
  h->redo.clear();
}

}  // namespace

void HistoryBeforeEdit(int wheel, int field, const KTyreParams &tyre) {
  WheelHistory *h = Of(wheel);
  if (!h) return;
  if (h->lastField == field && !h->undo.empty()) {
    h->redo.clear();
    return;
  }
  Push(h, tyre);
  h->lastField = field;
}

void HistoryBeforeFit(int wheel, const KTyreParams &tyre) {
  WheelHistory *h = Of(wheel);
  if (!h) return;
  Push(h, tyre);
  h->lastField = -1;
}

bool HistoryUndo(int wheel, KTyreParams *tyre) {
  WheelHistory *h = Of(wheel);
  if (!h || h->undo.empty()) return false;
  h->redo.push_back(*tyre);
  *tyre = h->undo.back();
  h->undo.pop_back();
  h->lastField = -1;
  return true;
}

bool HistoryRedo(int wheel, KTyreParams *tyre) {
  WheelHistory *h = Of(wheel);
  if (!h || h->redo.empty()) return false;
  h->undo.push_back(*tyre);
  *tyre = h->redo.back();
  h->redo.pop_back();
  h->lastField = -1;
  return true;
}

int HistoryUndoCount(int wheel) { return Of(wheel) ? int(Of(wheel)->undo.size()) : 0; }
int HistoryRedoCount(int wheel) { return Of(wheel) ? int(Of(wheel)->redo.size()) : 0; }

void HistoryClear(int wheel) {
  for (int w = 0; w < CAR_WHEELS; w++)
    if (wheel < 0 || w == wheel) g_wheels[w] = WheelHistory();
}

void HistoryBreak() {
  for (WheelHistory &h : g_wheels) h.lastField = -1;
}
