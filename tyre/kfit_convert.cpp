// KFitConvert: one tyre model into another, by fitting samples of the source.
#include "tyre/kfit.h"
#include "tyre/ksample.h"

bool KFitConvert(const KTyreParams &source, const KFitOptions &options, KPacejka *out, KFitResult *result,
                 KMeasuredData *samples) {
  KMeasuredData data;
  KSampleTyre(source, KSamplePlanFor(source, KFIT_CONVERT_LOADS), &data);
  const bool ok = KFitTyre(data, options, out, result);
  if (samples) *samples = std::move(data);
  return ok;
}
