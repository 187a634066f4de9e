// Undo and redo of the tyre edits of each wheel: a fit taken into the tyre,
// a coefficient moved on the value slider or typed in. Each step keeps the
// whole tyre (KTyreParams) as it was before, so undo gives back every
// member bit for bit. Steps of one drag of one coefficient fold into one.
// The window calls it on its one thread.
#pragma once

#include "chart/carload.h"

struct KTyreParams;

constexpr int HISTORY_DEPTH = 100;  // steps kept per wheel; the oldest go first

// Before a coefficient edit of `wheel` (field: the coefficient's field): a
// step, unless the last step of this wheel edited the same field and nothing
// came between.
void HistoryBeforeEdit(int wheel, int field, const KTyreParams &tyre);
// Before a fit's result goes into the tyre: always a step.
void HistoryBeforeFit(int wheel, const KTyreParams &tyre);
// Undo or redo the last step of `wheel` on `tyre`; false when there is none.
bool HistoryUndo(int wheel, KTyreParams *tyre);
bool HistoryRedo(int wheel, KTyreParams *tyre);
int HistoryUndoCount(int wheel);
int HistoryRedoCount(int wheel);
// Forgets the steps of one wheel (Revert), or of every wheel with -1.
void HistoryClear(int wheel);
// Ends the folding of slider steps: the next edit is a step of its own.
void HistoryBreak();
