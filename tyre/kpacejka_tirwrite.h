// Writing a Magic Formula tyre (model 1 or 3) as a TIR tyre property file.
//
// The file holds [MODEL] (FITTYP 52 or 61), [DIMENSIONS],
// [OPERATING_CONDITIONS] (a tyre that carries pressure only), [VERTICAL], the
// four range sections and the scaling, longitudinal, lateral and aligning
// coefficient sections with every member the TIR import reads, each value
// in the fewest digits that read back to the same float. Reading the file
// back with KPacejka::LoadFromTirFile gives the same members and so the same
// forces, bit for bit. Sections and keys come from the member table.
#pragma once

#include <string>

class KPacejka;

// Whether the tyre's model has a TIR form here (1 and 3; not 0, 2 or others).
bool KPacejkaTirWritable(const KPacejka &tyre);
// The tyre as TIR text, appended to `out`. False, with an error report and
// nothing appended, for a model without a TIR form.
bool KPacejkaTirText(const KPacejka &tyre, std::string *out);
// Writes the tyre to the file `path`, replacing it. False, with an error
// report naming the path and the reason, when the model has no TIR form (no
// file is made) or the file can't be written (a partly written file is
// removed).
bool KPacejkaWriteTirFile(const char *path, const KPacejka &tyre);
