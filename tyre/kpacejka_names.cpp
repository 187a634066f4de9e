// The member table of KPacejka: one entry per named member, in declaration
// order, with its kind, byte offset, model family, group, TIR key, fit bounds
// and car.ini scaling place, its sign under mirroring and shape-pair role,
// and the panel's label, description, unit and slider range. Loading
// (configuration and TIR), the TIR writer, the CLI's --dump/--set, the
// editor, the exports and the fitter take their names and lists from here
// instead of spelling them again.
//
//   the table            one entry per member
//   checks on the table  static_asserts on the runs that code walks by position
//   lookups              by name, by TIR key, by car.ini place
//   queries              model families, fitted members per group
//   access               reading and writing a member of a tyre
#include <cstddef>
#include <cstring>

#include "tyre/kpacejka.h"

namespace {

using K = KPacejkaMember;

// TIR sections, as the reader names them (lower case).
#define LONGITUDINAL "longitudinal_coefficients"
#define LATERAL "lateral_coefficients"
#define ALIGNING "aligning_coefficients"
#define SCALING_TIR "scaling_coefficients"

#define AT(m) uint32_t(offsetof(KTyreParams, m))
// A Pacejka89/96 coefficient: no TIR key; fitted within [lo, hi]; its sign
// under mirroring and its place in a shape pair; the panel's description,
// unit and value-slider range.
#define P96(m, group, lo, hi, mirror, shape, desc, unit, sliderMin, sliderMax)            \
  {#m, K::FLOAT, AT(m), K::PAC96_FAMILY, K::group, nullptr, nullptr, lo, hi, -1, K::mirror, \
   K::shape, nullptr, desc, unit, sliderMin, sliderMax}
// A Magic Formula coefficient under its own name in a TIR section; fitted
// within [lo, hi] unless lo == hi; then MIRROR(...) or SHAPE(...) when it
// has a role there.
#define MF(m, family, group, section, lo, hi, ...) \
  {#m, K::FLOAT, AT(m), K::family, K::group, section, #m, lo, hi, -1, __VA_ARGS__}
#define MIRROR(channels) uint8_t(channels)
#define SHAPE(role) K::MIRROR_NONE, K::role
// A scaling factor, at place `order` of the car.ini list; the first 28 with
// the panel's radio label and description (slider 0 ... 2, no unit).
#define SCALE(m, key, order, ...)                                                                  \
  {#m, K::FLOAT, AT(m), K::MAGIC_FAMILY, K::SCALING, SCALING_TIR, key, 0, 0, order, K::MIRROR_NONE, \
   K::NO_SHAPE, __VA_ARGS__}
// A range end under its configuration key and its TIR key.
#define RANGE(name, m, section, key) {name, K::FLOAT, AT(m), K::ANY, K::RANGES, section, key}

}  // namespace

// Fit bounds hold every bundled tyre (data/cars, data/tyres and the TIR test
// files) with room to spare; they stop shape factors at physical limits
// (C within 0.5 ... 3, curvature E at zero load no more than 1, stiffness
// divisors positive) and leave sign conventions open where files differ.
constexpr KPacejkaMember kpacejkaMembers[] = {
    {"flags", K::FLAGS, AT(flags)},
    // ---- Pacejka89/96 (kN, degrees, percent) ----
    // Lateral force a0 ... a13 (a2 and b2 also set the force limits of
    // Pacejka2006, which has no friction coefficient of its own there)
    P96(a0, PURE_FY, 0.5f, 3.0f, MIRROR_NONE, SHAPE_C, "Shape factor", "", 0, 2),
    P96(a1, PURE_FY, -100.0f, 100.0f, MIRROR_FY, NO_SHAPE,
        "Load infl. on lat. friction coeff (*1000)", "kN^-1", -50, 50),
    P96(a2, PURE_FY, 0.0f, 3000.0f, MIRROR_FY, NO_SHAPE, "Lateral friction coeff at load=0 (*1000)", "", 0, 3000),
    P96(a3, PURE_FY, 0.0f, 20000.0f, MIRROR_FY, NO_SHAPE, "Maximum stiffness", "N/deg", 0, 3000),
    P96(a4, PURE_FY, 0.5f, 200.0f, MIRROR_NONE, NO_SHAPE, "Load at maximum stiffness", "kN", 0, 50),
    P96(a5, PURE_FY, -1.0f, 1.0f, MIRROR_NONE, NO_SHAPE, "Camber influence on stiffnes", "%/deg/100", -1, 1),
    P96(a6, PURE_FY, -2.0f, 2.0f, MIRROR_NONE, NO_SHAPE, "Curvature change with load", "", -2.5f, 2.5f),
    P96(a7, PURE_FY, -10.0f, 1.0f, MIRROR_NONE, SHAPE_E, "Curvature at load=0", "", -2.5f, 2.5f),
    P96(a8, PURE_FY, -1.0f, 1.0f, MIRROR_NONE, NO_SHAPE, "Hor. shift because of camber", "deg/deg", -1, 1),
    P96(a9, PURE_FY, -0.1f, 0.1f, MIRROR_NONE, NO_SHAPE, "Load influence on horizontal shift", "deg/kN", -1, 1),
    P96(a10, PURE_FY, -2.0f, 2.0f, MIRROR_NONE, NO_SHAPE, "Horizontal shift at load=0", "deg", -1, 1),
    P96(a111, PURE_FY, -50.0f, 50.0f, MIRROR_FY, NO_SHAPE,
        "Camber influence on vertical shift, load dependent", "N/deg/kN", -15, 15),
    P96(a112, PURE_FY, -50.0f, 50.0f, MIRROR_FY, NO_SHAPE, "Camber influence on vertical shift", "N/deg/kN^2", -1, 1),
    P96(a12, PURE_FY, -50.0f, 50.0f, MIRROR_FY, NO_SHAPE, "Load influence on vertical shift", "N/kN", -10, 10),
    P96(a13, PURE_FY, -200.0f, 200.0f, MIRROR_FY, NO_SHAPE, "Vertical shift at load=0", "N", 0, 100),
    // Longitudinal force b0 ... b12
    P96(b0, PURE_FX, 0.5f, 3.0f, MIRROR_NONE, SHAPE_C, "Shape factor", "", 0, 2),
    P96(b1, PURE_FX, -200.0f, 200.0f, MIRROR_NONE, NO_SHAPE,
        "Load influence on longitudinal friction coeff (*1000)", "k/N", -25, 25),
    P96(b2, PURE_FX, 0.0f, 3000.0f, MIRROR_NONE, NO_SHAPE,
        "Longitudinal friction coeff at load=0 (*1000)", "", 0, 3000),
    P96(b3, PURE_FX, -100.0f, 100.0f, MIRROR_NONE, NO_SHAPE, "Curvature factor of stiffness", "N/%/kN^2", -1, 1),
    P96(b4, PURE_FX, 0.0f, 2000.0f, MIRROR_NONE, NO_SHAPE,
        "Change of stiffness with load at load = 0", "N/%/kN", 0, 500),
    P96(b5, PURE_FX, -1.0f, 1.0f, MIRROR_NONE, NO_SHAPE, "Change of progressivity of stiffness/load", "kN^-1", -1, 1),
    P96(b6, PURE_FX, -0.1f, 0.1f, MIRROR_NONE, NO_SHAPE, "Curvature change with load^2", "", -1, 1),
    P96(b7, PURE_FX, -1.0f, 1.0f, MIRROR_NONE, NO_SHAPE, "Curvature change with load", "", -1, 1),
    P96(b8, PURE_FX, -10.0f, 1.0f, MIRROR_NONE, SHAPE_E, "Curvature at load=0", "", -1, 1),
    P96(b9, PURE_FX, -1.0f, 1.0f, MIRROR_NONE, NO_SHAPE, "Load influence on hor. shift", "%/kN", -1, 1),
    P96(b10, PURE_FX, -5.0f, 5.0f, MIRROR_NONE, NO_SHAPE, "Horizontal shift at load=0", "%", -1, 1),
    P96(b11, PURE_FX, -100.0f, 100.0f, MIRROR_NONE, NO_SHAPE, "Load influence on vertical shift", "N/kN", -1, 1),
    P96(b12, PURE_FX, -500.0f, 500.0f, MIRROR_NONE, NO_SHAPE, "Vertical shift at load=0", "N", -1, 1),
    // Aligning moment c0 ... c17 (c9 is the curvature at zero load, capped
    // at 1 by the model but above 1 in published sets)
    P96(c0, PURE_MZ, 0.5f, 3.0f, MIRROR_NONE, SHAPE_C, "Shape factor", "", -2.5f, 2.5f),
    P96(c1, PURE_MZ, -20.0f, 20.0f, MIRROR_MZ, NO_SHAPE, "Load influence of peak value", "Nm/kN^2", -5, 5),
    P96(c2, PURE_MZ, -50.0f, 50.0f, MIRROR_MZ, NO_SHAPE, "Load influence of peak value", "Nm/kN", -15, 15),
    P96(c3, PURE_MZ, -10.0f, 10.0f, MIRROR_MZ, NO_SHAPE, "Curvature factor of stiffness", "m/deg/kN^2", -1.5f, 1.5f),
    P96(c4, PURE_MZ, -50.0f, 50.0f, MIRROR_MZ, NO_SHAPE,
        "Change of stiffness with load at load=0", "Nm/deg/kN", -10, 10),
    P96(c5, PURE_MZ, -1.0f, 1.0f, MIRROR_NONE, NO_SHAPE, "Change of progressivity of stiffness/load", "kN^-1", -1, 1),
    P96(c6, PURE_MZ, -1.0f, 1.0f, MIRROR_NONE, NO_SHAPE, "Camber influence on stiffness", "%/deg/100", -1, 1),
    P96(c7, PURE_MZ, -1.0f, 1.0f, MIRROR_NONE, NO_SHAPE, "Curvature change with load^2", "", -1, 1),
    P96(c8, PURE_MZ, -5.0f, 5.0f, MIRROR_NONE, NO_SHAPE, "", "", -7.5f, 7.5f),
    P96(c9, PURE_MZ, -10.0f, 5.0f, MIRROR_NONE, SHAPE_E, "Curvature at load=0", "", -25, 25),
    P96(c10, PURE_MZ, -1.0f, 1.0f, MIRROR_NONE, NO_SHAPE, "Camber influence on stiffness", "", -1, 1),
    P96(c11, PURE_MZ, -1.0f, 1.0f, MIRROR_NONE, NO_SHAPE,
        "Camber influence on horizontal shift", "deg/deg", -0.5f, 0.5f),
    P96(c12, PURE_MZ, -0.5f, 0.5f, MIRROR_NONE, NO_SHAPE,
        "Load influence on horizontal shift", "deg/kN", -0.5f, 0.5f),
    P96(c13, PURE_MZ, -2.0f, 2.0f, MIRROR_NONE, NO_SHAPE, "Horizontal shift at load=0", "deg", -1, 1),
    P96(c14, PURE_MZ, -1.0f, 1.0f, MIRROR_MZ, NO_SHAPE, "Camber influence on vertical shift", "Nm/deg/kN^2", -1, 1),
    P96(c15, PURE_MZ, -5.0f, 5.0f, MIRROR_MZ, NO_SHAPE,
        "Camber influence on vertical shift", "Nm/deg/kN", -2.5f, 2.5f),
    P96(c16, PURE_MZ, -20.0f, 20.0f, MIRROR_MZ, NO_SHAPE, "Load influence on vertical shift", "Nm/kN", -1.5f, 1.5f),
    P96(c17, PURE_MZ, -100.0f, 100.0f, MIRROR_MZ, NO_SHAPE, "Vertical shift at load=0", "Nm", -2.5f, 2.5f),
    // ---- Scaling factors (storage order; the TIR key of lt is lkzc, further down) ----
    SCALE(lfz0, "lfz0", 0, "lfz0", "nominal (rated) load", "", 0, 2),
    SCALE(lcx, "lcx", 1, "lcx", "Fx shape factor", "", 0, 2),
    SCALE(lmux, "lmux", 2, "lmux", "Fx peak friction coefficient", "", 0, 2),
    SCALE(lex, "lex", 3, "lex", "Fx curvature factor", "", 0, 2),
    SCALE(lkx, "lkx", 4, "lKx", "Fx slip stiffness", "", 0, 2),
    SCALE(lhx, "lhx", 5, "lHx", "Fx horizontal shift", "", 0, 2),
    SCALE(lvx, "lvx", 6, "lVx", "Fx vertical shift", "", 0, 2),
    SCALE(lgax, "lgax", 7, "lGax", "camber for Fx", "", 0, 2),
    SCALE(lcy, "lcy", 8, "lcy", "Fy shape factor", "", 0, 2),
    SCALE(lmuy, "lmuy", 9, "lmuy", "Fy peak friction coefficient", "", 0, 2),
    SCALE(ley, "ley", 10, "ley", "Fy curvature factor", "", 0, 2),
    SCALE(lky, "lky", 11, "lKy", "Fy cornering stiffness", "", 0, 2),
    SCALE(lhy, "lhy", 12, "lHy", "Fy horizontal shift", "", 0, 2),
    SCALE(lvy, "lvy", 13, "lVy", "Fy vertical shift", "", 0, 2),
    SCALE(lgay, "lgay", 14, "lGay", "camber for Fy", "", 0, 2),
    SCALE(lxal, "lxal", 21, "lxal", "alpha influence on Fx (combined)", "", 0, 2),
    SCALE(lyka, "lyka", 22, "lyka", "alpha influence on Fy (combined)", "", 0, 2),
    SCALE(lvyka, "lvyka", 23, "lvyka", "kappa induced Fy (combined)", "", 0, 2),
    SCALE(ls, "ls", 24, "ls", "moment arm of Fx (combined)", "", 0, 2),
    SCALE(lsgkp, "lsgkp", 25, "lsgkp", "relaxation length of Fx", "", 0, 2),
    SCALE(lsgal, "lsgal", 26, "lsgal", "relaxation length of Fy", "", 0, 2),
    SCALE(lgyr, "lgyr", 27, "lgyr", "gyroscopic torque", "", 0, 2),
    SCALE(lmx, "lmx", 18, "lmx", "overturning couple", "", 0, 2),
    SCALE(lvmx, "lvmx", 19, "lvmx", "Mx vertical shift", "", 0, 2),
    SCALE(lmy, "lmy", 20, "lmy", "rolling resistance torque", "", 0, 2),
    SCALE(lgaz, "lgaz", 17, "lgaz", "camber for Mz", "", 0, 2),
    SCALE(ltr, "ltr", 15, "ltr", "peak of pneumatic trail", "", 0, 2),
    SCALE(lres, "lres", 16, "lres", "offset of residual torque", "", 0, 2),
    // ---- Magic Formula, longitudinal ----
    MF(pcx1, MAGIC_FAMILY, PURE_FX, LONGITUDINAL, 0.5f, 3.0f, SHAPE(SHAPE_C)),
    MF(pdx1, MAGIC_FAMILY, PURE_FX, LONGITUDINAL, 0.1f, 3.0f),
    MF(pdx2, MAGIC_FAMILY, PURE_FX, LONGITUDINAL, -1.0f, 1.0f),
    MF(pdx3, MF_ONLY, PURE_FX, LONGITUDINAL, -20.0f, 20.0f),
    MF(pex1, MAGIC_FAMILY, PURE_FX, LONGITUDINAL, -10.0f, 1.0f, SHAPE(SHAPE_E)),
    MF(pex2, MAGIC_FAMILY, PURE_FX, LONGITUDINAL, -10.0f, 10.0f),
    MF(pex3, MAGIC_FAMILY, PURE_FX, LONGITUDINAL, -10.0f, 10.0f),
    MF(pex4, MAGIC_FAMILY, PURE_FX, LONGITUDINAL, -5.0f, 5.0f),
    MF(pkx1, MAGIC_FAMILY, PURE_FX, LONGITUDINAL, 1.0f, 100.0f),
    MF(pkx2, MAGIC_FAMILY, PURE_FX, LONGITUDINAL, -50.0f, 50.0f),
    MF(pkx3, MAGIC_FAMILY, PURE_FX, LONGITUDINAL, -5.0f, 5.0f),
    MF(phx1, MAGIC_FAMILY, PURE_FX, LONGITUDINAL, -0.1f, 0.1f),
    MF(phx2, MAGIC_FAMILY, PURE_FX, LONGITUDINAL, -0.1f, 0.1f),
    // Pacejka2006 weights its vertical shift with a speed it is never given: 0
    MF(pvx1, MF_ONLY, PURE_FX, LONGITUDINAL, -0.5f, 0.5f),
    MF(pvx2, MF_ONLY, PURE_FX, LONGITUDINAL, -0.5f, 0.5f),
    MF(rbx1, MAGIC_FAMILY, COMBINED_FX, LONGITUDINAL, 0.0f, 100.0f),
    MF(rbx2, MAGIC_FAMILY, COMBINED_FX, LONGITUDINAL, -100.0f, 100.0f),
    MF(rbx3, PAC2006_ONLY, COMBINED_FX, LONGITUDINAL, -500.0f, 500.0f),
    MF(rcx1, MAGIC_FAMILY, COMBINED_FX, LONGITUDINAL, 0.5f, 3.0f),
    MF(rex1, MAGIC_FAMILY, COMBINED_FX, LONGITUDINAL, -10.0f, 1.0f),
    MF(rex2, MAGIC_FAMILY, COMBINED_FX, LONGITUDINAL, -10.0f, 10.0f),
    MF(rhx1, MAGIC_FAMILY, COMBINED_FX, LONGITUDINAL, -0.1f, 0.1f),
    // relaxation lengths: no evaluation here reads them, so nothing fits them
    MF(ptx1, MAGIC_FAMILY, RELAXATION, LONGITUDINAL, 0, 0),
    MF(ptx2, MAGIC_FAMILY, RELAXATION, LONGITUDINAL, 0, 0),
    MF(ptx3, MAGIC_FAMILY, RELAXATION, LONGITUDINAL, 0, 0),
    // ---- Magic Formula, lateral (pdy1 and pky1 take either sign: files differ
    //      in their axis convention) ----
    MF(pcy1, MAGIC_FAMILY, PURE_FY, LATERAL, 0.5f, 3.0f, SHAPE(SHAPE_C)),
    MF(pdy1, MAGIC_FAMILY, PURE_FY, LATERAL, -3.0f, 3.0f, MIRROR(K::MIRROR_FY)),
    MF(pdy2, MAGIC_FAMILY, PURE_FY, LATERAL, -1.0f, 1.0f, MIRROR(K::MIRROR_FY)),
    MF(pdy3, MAGIC_FAMILY, PURE_FY, LATERAL, -20.0f, 20.0f),
    MF(pey1, MAGIC_FAMILY, PURE_FY, LATERAL, -10.0f, 1.0f, SHAPE(SHAPE_E)),
    MF(pey2, MAGIC_FAMILY, PURE_FY, LATERAL, -10.0f, 10.0f),
    MF(pey3, MAGIC_FAMILY, PURE_FY, LATERAL, -50.0f, 50.0f),
    MF(pey4, MAGIC_FAMILY, PURE_FY, LATERAL, -1000.0f, 1000.0f),
    MF(pky1, MAGIC_FAMILY, PURE_FY, LATERAL, -100.0f, 100.0f, MIRROR(K::MIRROR_FY)),
    MF(pky2, MAGIC_FAMILY, PURE_FY, LATERAL, 0.1f, 20.0f),
    MF(pky3, MAGIC_FAMILY, PURE_FY, LATERAL, -5.0f, 5.0f),
    MF(phy1, MAGIC_FAMILY, PURE_FY, LATERAL, -0.1f, 0.1f),
    MF(phy2, MAGIC_FAMILY, PURE_FY, LATERAL, -0.1f, 0.1f),
    MF(phy3, MAGIC_FAMILY, PURE_FY, LATERAL, -1.0f, 1.0f),
    MF(pvy1, MAGIC_FAMILY, PURE_FY, LATERAL, -0.5f, 0.5f, MIRROR(K::MIRROR_FY)),
    MF(pvy2, MAGIC_FAMILY, PURE_FY, LATERAL, -0.5f, 0.5f, MIRROR(K::MIRROR_FY)),
    MF(pvy3, MAGIC_FAMILY, PURE_FY, LATERAL, -5.0f, 5.0f, MIRROR(K::MIRROR_FY)),
    MF(pvy4, MAGIC_FAMILY, PURE_FY, LATERAL, -5.0f, 5.0f, MIRROR(K::MIRROR_FY)),
    MF(rby1, MAGIC_FAMILY, COMBINED_FY, LATERAL, 0.0f, 100.0f),
    MF(rby2, MAGIC_FAMILY, COMBINED_FY, LATERAL, -100.0f, 100.0f),
    MF(rby3, MAGIC_FAMILY, COMBINED_FY, LATERAL, -1.0f, 1.0f),
    MF(rby4, PAC2006_ONLY, COMBINED_FY, LATERAL, -500.0f, 500.0f),
    MF(rcy1, MAGIC_FAMILY, COMBINED_FY, LATERAL, 0.0f, 3.0f),
    MF(rey1, MAGIC_FAMILY, COMBINED_FY, LATERAL, -10.0f, 1.0f),
    MF(rey2, MAGIC_FAMILY, COMBINED_FY, LATERAL, -10.0f, 10.0f),
    MF(rhy1, MAGIC_FAMILY, COMBINED_FY, LATERAL, -0.1f, 0.1f),
    MF(rhy2, MAGIC_FAMILY, COMBINED_FY, LATERAL, -0.1f, 0.1f),
    MF(rvy1, MAGIC_FAMILY, COMBINED_FY, LATERAL, -5.0f, 5.0f, MIRROR(K::MIRROR_FY)),
    MF(rvy2, MAGIC_FAMILY, COMBINED_FY, LATERAL, -5.0f, 5.0f, MIRROR(K::MIRROR_FY)),
    MF(rvy3, MAGIC_FAMILY, COMBINED_FY, LATERAL, -500.0f, 500.0f, MIRROR(K::MIRROR_FY)),
    MF(rvy4, MAGIC_FAMILY, COMBINED_FY, LATERAL, -500.0f, 500.0f),
    MF(rvy5, MAGIC_FAMILY, COMBINED_FY, LATERAL, -10.0f, 10.0f),
    MF(rvy6, MAGIC_FAMILY, COMBINED_FY, LATERAL, -1000.0f, 1000.0f),
    MF(pty1, MAGIC_FAMILY, RELAXATION, LATERAL, 0, 0),
    MF(pty2, MAGIC_FAMILY, RELAXATION, LATERAL, 0, 0),
    // ---- Magic Formula, aligning ----
    MF(qbz1, MAGIC_FAMILY, PURE_MZ, ALIGNING, 0.0f, 50.0f),
    MF(qbz2, MAGIC_FAMILY, PURE_MZ, ALIGNING, -20.0f, 20.0f),
    MF(qbz3, MAGIC_FAMILY, PURE_MZ, ALIGNING, -20.0f, 20.0f),
    // qbz4 has no TIR key: the import leaves it alone, so a file could not
    // carry a fitted value back; it is not fitted either.
    {"qbz4", K::FLOAT, AT(qbz4), K::MF_ONLY, K::PURE_MZ},
    MF(qbz5, MAGIC_FAMILY, PURE_MZ, ALIGNING, -5.0f, 5.0f),
    MF(qbz6, PAC2006_ONLY, PURE_MZ, ALIGNING, -5.0f, 5.0f),
    MF(qbz9, MAGIC_FAMILY, PURE_MZ, ALIGNING, -50.0f, 50.0f),
    MF(qbz10, MAGIC_FAMILY, PURE_MZ, ALIGNING, -5.0f, 5.0f),
    MF(qcz1, MAGIC_FAMILY, PURE_MZ, ALIGNING, 0.5f, 3.0f, SHAPE(SHAPE_C)),
    MF(qdz1, MAGIC_FAMILY, PURE_MZ, ALIGNING, -1.0f, 1.0f, MIRROR(K::MIRROR_FY | K::MIRROR_MZ)),
    MF(qdz2, MAGIC_FAMILY, PURE_MZ, ALIGNING, -1.0f, 1.0f, MIRROR(K::MIRROR_FY | K::MIRROR_MZ)),
    MF(qdz3, MAGIC_FAMILY, PURE_MZ, ALIGNING, -5.0f, 5.0f),
    MF(qdz4, MAGIC_FAMILY, PURE_MZ, ALIGNING, -50.0f, 50.0f),
    MF(qdz6, MAGIC_FAMILY, PURE_MZ, ALIGNING, -0.1f, 0.1f, MIRROR(K::MIRROR_MZ)),
    MF(qdz7, MAGIC_FAMILY, PURE_MZ, ALIGNING, -0.1f, 0.1f, MIRROR(K::MIRROR_MZ)),
    MF(qdz8, MAGIC_FAMILY, PURE_MZ, ALIGNING, -5.0f, 5.0f, MIRROR(K::MIRROR_MZ)),
    MF(qdz9, MAGIC_FAMILY, PURE_MZ, ALIGNING, -5.0f, 5.0f, MIRROR(K::MIRROR_MZ)),
    MF(qez1, MAGIC_FAMILY, PURE_MZ, ALIGNING, -50.0f, 1.0f, SHAPE(SHAPE_E)),
    MF(qez2, MAGIC_FAMILY, PURE_MZ, ALIGNING, -50.0f, 50.0f),
    MF(qez3, MAGIC_FAMILY, PURE_MZ, ALIGNING, -50.0f, 50.0f),
    MF(qez4, MAGIC_FAMILY, PURE_MZ, ALIGNING, -10.0f, 10.0f),
    MF(qez5, MAGIC_FAMILY, PURE_MZ, ALIGNING, -1000.0f, 1000.0f),
    MF(qhz1, MAGIC_FAMILY, PURE_MZ, ALIGNING, -0.1f, 0.1f),
    MF(qhz2, MAGIC_FAMILY, PURE_MZ, ALIGNING, -0.1f, 0.1f),
    MF(qhz3, MAGIC_FAMILY, PURE_MZ, ALIGNING, -1.0f, 1.0f),
    MF(qhz4, MAGIC_FAMILY, PURE_MZ, ALIGNING, -1.0f, 1.0f),
    MF(ssz1, MAGIC_FAMILY, COMBINED_MZ, ALIGNING, -0.5f, 0.5f, MIRROR(K::MIRROR_MZ)),
    MF(ssz2, MAGIC_FAMILY, COMBINED_MZ, ALIGNING, -0.5f, 0.5f, MIRROR(K::MIRROR_FY | K::MIRROR_MZ)),
    MF(ssz3, MAGIC_FAMILY, COMBINED_MZ, ALIGNING, -5.0f, 5.0f, MIRROR(K::MIRROR_MZ)),
    MF(ssz4, MAGIC_FAMILY, COMBINED_MZ, ALIGNING, -5.0f, 5.0f, MIRROR(K::MIRROR_MZ)),
    // ---- Turn slip (set by code only) ----
    {"zeta0", K::FLOAT, AT(zeta0), K::PAC2006_ONLY, K::TURN_SLIP},
    {"zeta1", K::FLOAT, AT(zeta1), K::PAC2006_ONLY, K::TURN_SLIP},
    {"zeta2", K::FLOAT, AT(zeta2), K::PAC2006_ONLY, K::TURN_SLIP},
    {"zeta3", K::FLOAT, AT(zeta3), K::PAC2006_ONLY, K::TURN_SLIP},
    {"zeta4", K::FLOAT, AT(zeta4), K::PAC2006_ONLY, K::TURN_SLIP},
    {"zeta5", K::FLOAT, AT(zeta5), K::PAC2006_ONLY, K::TURN_SLIP},
    {"zeta6", K::FLOAT, AT(zeta6), K::PAC2006_ONLY, K::TURN_SLIP},
    {"zeta7", K::FLOAT, AT(zeta7), K::PAC2006_ONLY, K::TURN_SLIP},
    {"zeta8", K::FLOAT, AT(zeta8), K::PAC2006_ONLY, K::TURN_SLIP},
    // ---- Tyre data (the import sets longv and mbelt itself, from no key) ----
    {"r0", K::FLOAT, AT(r0), K::MAGIC_FAMILY, K::DIMENSIONS, "dimensions", "unloaded_radius"},
    {"fz0", K::FLOAT, AT(fz0), K::MAGIC_FAMILY, K::DIMENSIONS, "vertical", "fnomin"},
    {"longv", K::FLOAT, AT(longv), K::MAGIC_FAMILY, K::DIMENSIONS},
    {"mbelt", K::FLOAT, AT(mbelt), K::MAGIC_FAMILY, K::DIMENSIONS},
    {"fyShiftScale", K::FLOAT, AT(fyShiftScale), K::MAGIC_FAMILY, K::COMBINED_FY},
    SCALE(lmp, "lmp", 28),
    SCALE(lkyc, "lkyc", 29),
    SCALE(lt, "lkzc", 30),
    {"model", K::INT, AT(model)},
    // ---- Validity ranges, under their configuration keys ----
    RANGE("slipangle_min", slipAngleMin, "slip_angle_range", "alpmin"),
    RANGE("slipangle_max", slipAngleMax, "slip_angle_range", "alpmax"),
    RANGE("slipratio_min", slipRatioMin, "long_slip_range", "kpumin"),
    RANGE("slipratio_max", slipRatioMax, "long_slip_range", "kpumax"),
    RANGE("camber_min", camberMin, "inclination_angle_range", "cammin"),
    RANGE("camber_max", camberMax, "inclination_angle_range", "cammax"),
    RANGE("fz_min", fzMin, "vertical_force_range", "fzmin"),
    RANGE("fz_max", fzMax, "vertical_force_range", "fzmax"),
    // ---- Inflation pressure (Pa), and the coefficients of its terms; ppy5,
    //      qpz1 and qpz2 are carried only (no term of these models reads them) ----
    {"inflpres", K::FLOAT, AT(inflpres), K::MF_ONLY, K::PRESSURE, "operating_conditions", "inflpres"},
    {"nompres", K::FLOAT, AT(nompres), K::MF_ONLY, K::PRESSURE, "operating_conditions", "nompres"},
    MF(ppx1, MF_ONLY, PRESSURE, LONGITUDINAL, -5.0f, 5.0f),
    MF(ppx2, MF_ONLY, PRESSURE, LONGITUDINAL, -5.0f, 5.0f),
    MF(ppx3, MF_ONLY, PRESSURE, LONGITUDINAL, -5.0f, 5.0f),
    MF(ppx4, MF_ONLY, PRESSURE, LONGITUDINAL, -5.0f, 5.0f),
    // ppy2 divides the load of the stiffness peak: 1 + ppy2·dpi stays positive
    MF(ppy1, MF_ONLY, PRESSURE, LATERAL, -5.0f, 5.0f),
    MF(ppy2, MF_ONLY, PRESSURE, LATERAL, -2.0f, 3.0f),
    MF(ppy3, MF_ONLY, PRESSURE, LATERAL, -5.0f, 5.0f),
    MF(ppy4, MF_ONLY, PRESSURE, LATERAL, -5.0f, 5.0f),
    MF(ppy5, MF_ONLY, PRESSURE, LATERAL, 0, 0),
    MF(ppz1, MF_ONLY, PRESSURE, ALIGNING, -5.0f, 5.0f),
    MF(ppz2, MF_ONLY, PRESSURE, ALIGNING, -5.0f, 5.0f),
    MF(qpz1, MF_ONLY, PRESSURE, ALIGNING, 0, 0),
    MF(qpz2, MF_ONLY, PRESSURE, ALIGNING, 0, 0),
};

const int kpacejkaMemberCount = int(sizeof kpacejkaMembers / sizeof kpacejkaMembers[0]);

// ---- Checks on the table ------------------------------------------------------------

namespace {

constexpr int kCount = int(sizeof kpacejkaMembers / sizeof kpacejkaMembers[0]);

constexpr bool Same(const char *a, const char *b) {
  while (*a && *a == *b) a++, b++;
  return *a == *b;
}

constexpr int IndexOf(const char *name) {
  for (int i = 0; i < kCount; i++)
    if (Same(kpacejkaMembers[i].name, name)) return i;
  return -1;
}

// Entries `first` ... `last` stand next to each other in the table and their
// floats next to each other in the object: code that walks such a run by
// position (reset, the editor's fields, the configuration reader) relies on it.
constexpr bool Contiguous(const char *first, const char *last) {
  const int from = IndexOf(first), to = IndexOf(last);
  if (from < 0 || to < from) return false;
  for (int i = from; i < to; i++)
    if (kpacejkaMembers[i + 1].offset != kpacejkaMembers[i].offset + sizeof(float)) return false;
  return true;
}

// Every place 0 ... KPACEJKA_INI_SCALING_COUNT-1 of the car.ini scaling order
// is taken exactly once, and only by scaling factors.
constexpr bool IniOrderComplete() {
  for (int place = 0; place < KPACEJKA_INI_SCALING_COUNT; place++) {
    int holders = 0;
    for (int i = 0; i < kCount; i++)
      if (kpacejkaMembers[i].iniOrder == place) holders += kpacejkaMembers[i].group == K::SCALING;
    if (holders != 1) return false;
  }
  for (int i = 0; i < kCount; i++)
    if (kpacejkaMembers[i].iniOrder >= KPACEJKA_INI_SCALING_COUNT) return false;
  return true;
}

// Fitted entries are floats with a proper interval; only coefficient groups are fitted.
constexpr bool FitBoundsSound() {
  for (int i = 0; i < kCount; i++) {
    const K &m = kpacejkaMembers[i];
    if (m.fitMin > m.fitMax) return false;
    if (m.fitMin == m.fitMax) continue;
    if (m.kind != K::FLOAT || m.group == K::OTHER) return false;
    if (m.group >= K::RELAXATION && m.group != K::PRESSURE) return false;
  }
  return true;
}

static_assert(Contiguous("a0", "c17") && IndexOf("c17") - IndexOf("a0") + 1 == KPacejka::PAC96_COUNT,
              "a0 ... c17 must stay one run of 46 floats");
static_assert(Contiguous("lfz0", "lres") && IndexOf("lres") - IndexOf("lfz0") + 1 == KPacejka::SCALING_COUNT,
              "the scaling factors must stay one run of 28 floats");
static_assert(IndexOf("lfz0") == IndexOf("c17") + 1, "the scaling factors follow c17");
static_assert(Contiguous("pcx1", "pty2") && Contiguous("qbz1", "ssz4") && Contiguous("zeta0", "zeta8"),
              "the Magic Formula and turn-slip runs must stay contiguous");
static_assert(Contiguous("inflpres", "qpz2") && IndexOf("qpz2") == kCount - 1,
              "the pressure members must stay one run of floats at the end");
static_assert(IniOrderComplete(), "every car.ini scaling place needs exactly one factor");
static_assert(FitBoundsSound(), "fit bounds only on float coefficients, with fitMin < fitMax");

}  // namespace

// ---- Lookups ------------------------------------------------------------------------

int KPacejkaMemberIndex(const char *name) {
  if (!name) return -1;
  for (int i = 0; i < kpacejkaMemberCount; i++)
    if (!strcmp(kpacejkaMembers[i].name, name)) return i;
  return -1;
}

const KPacejkaMember *KPacejkaFindMember(const char *name) {
  int i = KPacejkaMemberIndex(name);
  return i < 0 ? nullptr : &kpacejkaMembers[i];
}

const KPacejkaMember *KPacejkaFindTirMember(const char *section, const char *key) {
  if (!section || !key) return nullptr;
  for (const KPacejkaMember &m : kpacejkaMembers)
    if (m.tirKey && !strcmp(m.tirSection, section) && !strcmp(m.tirKey, key)) return &m;
  return nullptr;
}

const KPacejkaMember *KPacejkaPac96Member(int i) {
  static const int a0 = IndexOf("a0");
  return i >= 0 && i < KPacejka::PAC96_COUNT ? &kpacejkaMembers[a0 + i] : nullptr;
}

const KPacejkaMember *KPacejkaIniScalingMember(int order) {
  if (order < 0 || order >= KPACEJKA_INI_SCALING_COUNT) return nullptr;
  for (const KPacejkaMember &m : kpacejkaMembers)
    if (m.iniOrder == order) return &m;
  return nullptr;
}

// ---- Queries ------------------------------------------------------------------------

bool KPacejkaModelReads(const KPacejkaMember &m, int model) {
  switch (m.family) {
    case KPacejkaMember::ANY: return true;
    case KPacejkaMember::PAC96_FAMILY: return model == KPacejka::PAC96;
    case KPacejkaMember::PAC2006_ONLY: return model == KPacejka::PAC2006;
    case KPacejkaMember::MF_ONLY: return model != KPacejka::PAC96 && model != KPacejka::PAC2006;
    default: return model != KPacejka::PAC96;  // MAGIC_FAMILY
  }
}

int KPacejkaFittedMembers(int model, KPacejkaMember::Group group, const KPacejkaMember **out,
                          int capacity) {
  int n = 0;
  for (const KPacejkaMember &m : kpacejkaMembers) {
    if (m.group != group || !KPacejkaIsFitted(m) || !KPacejkaModelReads(m, model)) continue;
    if (out && n < capacity) out[n] = &m;
    n++;
  }
  return n;
}

bool KPacejkaHasPressure(const KTyreParams &tyre) {
  for (const KPacejkaMember &m : kpacejkaMembers)
    if (m.group == KPacejkaMember::PRESSURE && KPacejkaGetMember(tyre, m) != 0.0) return true;
  return false;
}

const char *KPacejkaPressureProblem(const KTyreParams &tyre, float pascals) {
  if (!(pascals > 0.0f) || !(pascals < 1e12f)) return "the pressure is no number of Pa above 0";
  if (tyre.model == KTyreParams::PAC96) return "a Pacejka89/96 tyre has no pressure terms (Magic Formula 5.2 and 6.1 tyres have)";
  if (tyre.model == KTyreParams::PAC2006) return "a Pacejka2006 tyre has no pressure terms (Magic Formula 5.2 and 6.1 tyres have)";
  if (!(tyre.nompres > 0.0f)) return "the tyre has no nominal inflation pressure (NOMPRES, the member nompres)";
  return nullptr;
}

const char *KPacejkaGroupName(KPacejkaMember::Group group) {
  static const char *const names[KPacejkaMember::GROUP_COUNT] = {
      "other",       "pure Fx",    "pure Fy",   "pure Mz",    "combined Fx", "combined Fy",
      "combined Mz", "relaxation", "turn slip", "scaling",    "dimensions",  "ranges",
      "pressure"};
  return group < KPacejkaMember::GROUP_COUNT ? names[group] : "?";
}

// ---- Access -------------------------------------------------------------------------

static char *At(const KTyreParams &tyre, const KPacejkaMember &m) {
  return const_cast<char *>(reinterpret_cast<const char *>(&tyre)) + m.offset;
}

float *KPacejkaFloat(KTyreParams &tyre, const KPacejkaMember &m) {
  return m.kind == KPacejkaMember::FLOAT ? reinterpret_cast<float *>(At(tyre, m)) : nullptr;
}

double KPacejkaGetMember(const KTyreParams &tyre, const KPacejkaMember &m) {
  switch (m.kind) {
    case KPacejkaMember::INT: return *reinterpret_cast<const int32_t *>(At(tyre, m));
    case KPacejkaMember::FLAGS: return *reinterpret_cast<const uint32_t *>(At(tyre, m));
    default: return double(*reinterpret_cast<const float *>(At(tyre, m)));
  }
}

void KPacejkaSetMember(KTyreParams &tyre, const KPacejkaMember &m, double value) {
  switch (m.kind) {
    case KPacejkaMember::INT: *reinterpret_cast<int32_t *>(At(tyre, m)) = int32_t(value); break;
    case KPacejkaMember::FLAGS: *reinterpret_cast<uint32_t *>(At(tyre, m)) = uint32_t(int64_t(value)); break;
    default: *reinterpret_cast<float *>(At(tyre, m)) = float(value); break;
  }
}
