// The member-name table of KPacejka: one entry per named member, in
// declaration order, with its kind and byte offset. Loading (configuration and
// TIR), the CLI's --dump/--set, the editor and the exports look names up here
// instead of spelling them again.
#include <cstddef>
#include <cstring>

#include "tyre/kpacejka.h"

#define F(m) {#m, KPacejkaMember::FLOAT, uint32_t(offsetof(KPacejka, m))}
#define R(name, m) {name, KPacejkaMember::FLOAT, uint32_t(offsetof(KPacejka, m))}

const KPacejkaMember kpacejkaMembers[] = {
    {"flags", KPacejkaMember::FLAGS, uint32_t(offsetof(KPacejka, flags))},
    // Pacejka89/96
    F(a0), F(a1), F(a2), F(a3), F(a4), F(a5),
    F(a6), F(a7), F(a8), F(a9), F(a10), F(a111),
    F(a112), F(a12), F(a13), F(b0), F(b1), F(b2),
    F(b3), F(b4), F(b5), F(b6), F(b7), F(b8),
    F(b9), F(b10), F(b11), F(b12), F(c0), F(c1),
    F(c2), F(c3), F(c4), F(c5), F(c6), F(c7),
    F(c8), F(c9), F(c10), F(c11), F(c12), F(c13),
    F(c14), F(c15), F(c16), F(c17),
    // scaling factors
    F(lfz0), F(lcx), F(lmux), F(lex), F(lkx), F(lhx),
    F(lvx), F(lgax), F(lcy), F(lmuy), F(ley), F(lky),
    F(lhy), F(lvy), F(lgay), F(lxal), F(lyka), F(lvyka),
    F(ls), F(lsgkp), F(lsgal), F(lgyr), F(lmx), F(lvmx),
    F(lmy), F(lgaz), F(ltr), F(lres),
    // Magic Formula, longitudinal
    F(pcx1), F(pdx1), F(pdx2), F(pdx3), F(pex1), F(pex2),
    F(pex3), F(pex4), F(pkx1), F(pkx2), F(pkx3), F(phx1),
    F(phx2), F(pvx1), F(pvx2), F(rbx1), F(rbx2), F(rbx3),
    F(rcx1), F(rex1), F(rex2), F(rhx1), F(ptx1), F(ptx2),
    F(ptx3),
    // Magic Formula, lateral
    F(pcy1), F(pdy1), F(pdy2), F(pdy3), F(pey1), F(pey2),
    F(pey3), F(pey4), F(pky1), F(pky2), F(pky3), F(phy1),
    F(phy2), F(phy3), F(pvy1), F(pvy2), F(pvy3), F(pvy4),
    F(rby1), F(rby2), F(rby3), F(rby4), F(rcy1), F(rey1),
    F(rey2), F(rhy1), F(rhy2), F(rvy1), F(rvy2), F(rvy3),
    F(rvy4), F(rvy5), F(rvy6), F(pty1), F(pty2),
    // Magic Formula, aligning
    F(qbz1), F(qbz2), F(qbz3), F(qbz4), F(qbz5), F(qbz6),
    F(qbz9), F(qbz10), F(qcz1), F(qdz1), F(qdz2), F(qdz3),
    F(qdz4), F(qdz6), F(qdz7), F(qdz8), F(qdz9), F(qez1),
    F(qez2), F(qez3), F(qez4), F(qez5), F(qhz1), F(qhz2),
    F(qhz3), F(qhz4), F(ssz1), F(ssz2), F(ssz3), F(ssz4),
    // turn slip
    F(zeta0), F(zeta1), F(zeta2), F(zeta3), F(zeta4), F(zeta5),
    F(zeta6), F(zeta7), F(zeta8),
    // tyre data
    F(r0), F(fz0), F(longv), F(mbelt), F(fyShiftScale), F(lmp), F(lkyc), F(lt),
    {"model", KPacejkaMember::INT, uint32_t(offsetof(KPacejka, model))},
    // validity ranges, under their configuration keys
    R("slipangle_min", slipAngleMin), R("slipangle_max", slipAngleMax),
    R("slipratio_min", slipRatioMin), R("slipratio_max", slipRatioMax),
    R("camber_min", camberMin), R("camber_max", camberMax),
    R("fz_min", fzMin), R("fz_max", fzMax),
};

const int kpacejkaMemberCount = int(sizeof kpacejkaMembers / sizeof kpacejkaMembers[0]);

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

static char *At(const KPacejka &tyre, const KPacejkaMember &m) {
  return const_cast<char *>(reinterpret_cast<const char *>(&tyre)) + m.offset;
}

float *KPacejkaFloat(KPacejka &tyre, const KPacejkaMember &m) {
  return m.kind == KPacejkaMember::FLOAT ? reinterpret_cast<float *>(At(tyre, m)) : nullptr;
}

double KPacejkaGetMember(const KPacejka &tyre, const KPacejkaMember &m) {
  switch (m.kind) {
    case KPacejkaMember::INT: return *reinterpret_cast<const int32_t *>(At(tyre, m));
    case KPacejkaMember::FLAGS: return *reinterpret_cast<const uint32_t *>(At(tyre, m));
    default: return double(*reinterpret_cast<const float *>(At(tyre, m)));
  }
}

void KPacejkaSetMember(KPacejka &tyre, const KPacejkaMember &m, double value) {
  switch (m.kind) {
    case KPacejkaMember::INT: *reinterpret_cast<int32_t *>(At(tyre, m)) = int32_t(value); break;
    case KPacejkaMember::FLAGS: *reinterpret_cast<uint32_t *>(At(tyre, m)) = uint32_t(int64_t(value)); break;
    default: *reinterpret_cast<float *>(At(tyre, m)) = float(value); break;
  }
}
