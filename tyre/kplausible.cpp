// The checks of measured data before fitting (tyre/kplausible.h).
#include "tyre/kplausible.h"

#include <cmath>
#include <cstdio>

bool KPlausibleCheck(const KMeasuredData &data, std::vector<std::string> *problems) {
  const size_t before = problems->size();
  size_t badLoads = 0;
  double minFz = 1e300, maxAlpha = 0, maxGamma = 0, maxKappa = 0;
  for (const KMeasuredPoint &p : data.points) {
    badLoads += p.fz <= 0;
    minFz = std::fmin(minFz, p.fz);
    maxAlpha = std::fmax(maxAlpha, std::fabs(p.alpha));
    maxGamma = std::fmax(maxGamma, std::fabs(p.gamma));
    maxKappa = std::fmax(maxKappa, std::fabs(p.kappa));
  }
  char buf[400];
  if (badLoads) {
    snprintf(buf, sizeof buf,
             "%zu of %zu loads are zero or negative (down to %.6g N): the loads look like SAE axes (z down); "
             "read the file with --axes sae (or --axes auto)",
             badLoads, data.points.size(), minFz);
    problems->push_back(buf);
  }
  if (maxAlpha > KPLAUSIBLE_ALPHA_MAX) {
    snprintf(buf, sizeof buf, "slip angles up to %.6g rad (%.4g°): looks like degrees: --units alpha=deg", maxAlpha,
             maxAlpha * 180 / M_PI);
    problems->push_back(buf);
  }
  if (maxGamma > KPLAUSIBLE_GAMMA_MAX) {
    snprintf(buf, sizeof buf, "cambers up to %.6g rad (%.4g°): looks like degrees: --units gamma=deg", maxGamma,
             maxGamma * 180 / M_PI);
    problems->push_back(buf);
  }
  if (maxKappa > KPLAUSIBLE_KAPPA_MAX) {
    snprintf(buf, sizeof buf, "slip ratios up to %.6g: looks like percent: --units kappa=%%", maxKappa);
    problems->push_back(buf);
  }
  return problems->size() == before;
}
