// KFitConvert: one tyre model into another, by fitting samples of the source.
#include "tyre/kfit.h"
#include "tyre/ksample.h"

bool KFitConvert(const KTyreParams &source, const KFitOptions &options, KPacejka *out, KFitResult *result,
                 KMeasuredData *samples) {
  KMeasuredData data;
  KSampleTyre(source, KSamplePlanFor(source, KFIT_CONVERT_LOADS), &data);
  // a source without combined slip gives a tyre without it
  KFitOptions o = options;
  if (source.model == KPacejka::PAC96) o.genericCombined = false;
  const bool ok = KFitTyre(data, o, out, result);
  if (samples) *samples = std::move(data);
  return ok;
}
