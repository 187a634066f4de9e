#!/usr/bin/env python3
"""Reference values for tests/tyre/kpacejka_*_test.cpp, in double precision.

Written from the model equations independently of the C++ code. Prints the
C++ table rows: {Fz N, kappa, alpha rad, gamma rad, Fx, Fy, Mz, stats...}.
Run: python3 tests/tyre/make_reference.py
"""
from math import atan, sin, cos, exp, sqrt, pi

R2D = 57.29578
D2R = 0.017453292

PAC96 = dict(zip(
    "a0 a1 a2 a3 a4 a5 a6 a7 a8 a9 a10 a111 a112 a12 a13".split() +
    ["b%d" % i for i in range(13)] + ["c%d" % i for i in range(18)],
    [1.55, -55, 1450, 1900, 7.2, 0.014, -0.24, 1.0, -0.03, -0.0013, -0.15, -8.5, -0.29, 17.8, -2.4,
     1.65, -110, 1800, 23.3, 410, 0.075, 0, 0.055, -0.024, 0.014, 0.26, 0, 0,
     2.2, -4.3, -4.4, -1.9, -9.6, 0.0225, 0, 0.044, -0.58, 0.18, 0.043, 0.048, -0.0035, -0.18, 0.14, -1.029, 0.27, -1.1]))

# A Magic Formula set with every term non-zero, so that a swapped or missing
# coefficient shows. Scaling factors other than 1 where a mix-up would hide.
MF = dict(
    pcx1=1.65, pdx1=1.2, pdx2=-0.1, pdx3=8.0, pex1=0.4, pex2=0.2, pex3=-0.1, pex4=0.05,
    pkx1=22.0, pkx2=-2.0, pkx3=0.3, phx1=0.001, phx2=0.0005, pvx1=0.01, pvx2=0.005,
    rbx1=12.0, rbx2=-9.0, rbx3=0.5, rcx1=1.05, rex1=-0.4, rex2=0.3, rhx1=0.004,
    pcy1=1.35, pdy1=1.1, pdy2=-0.15, pdy3=3.0, pey1=-0.8, pey2=-0.6, pey3=0.1, pey4=-5.0,
    pky1=-18.0, pky2=1.8, pky3=0.6, phy1=0.002, phy2=0.001, phy3=0.03, pvy1=0.03, pvy2=-0.01,
    pvy3=-0.2, pvy4=-0.4, rby1=7.0, rby2=2.5, rby3=0.01, rby4=0.2, rcy1=1.05, rey1=0.1, rey2=0.05,
    rhy1=0.01, rhy2=0.02, rvy1=0.05, rvy2=0.02, rvy3=-0.3, rvy4=20.0, rvy5=1.9, rvy6=10.0,
    qbz1=10.0, qbz2=-1.5, qbz3=-0.8, qbz4=0.1, qbz5=-0.3, qbz6=0.2, qbz9=15.0, qbz10=0.2, qcz1=1.2,
    qdz1=0.1, qdz2=-0.005, qdz3=0.3, qdz4=-2.0, qdz6=0.003, qdz7=-0.002, qdz8=-0.2, qdz9=0.03,
    qez1=-1.5, qez2=0.5, qez3=0.1, qez4=0.3, qez5=-0.5, qhz1=0.003, qhz2=0.002, qhz3=0.1, qhz4=-0.1,
    ssz1=0.02, ssz2=0.03, ssz3=0.5, ssz4=-0.3,
    r0=0.31, fz0=4000.0, fyShiftScale=1.0,
    lfz0=1.1, lcx=1.0, lmux=0.95, lex=1.0, lkx=1.05, lhx=1.0, lvx=1.0, lgax=1.2, lcy=1.0,
    lmuy=0.9, ley=1.0, lky=1.1, lhy=1.0, lvy=1.0, lgay=0.8, lxal=1.0, lyka=0.9, lvyka=1.0,
    ls=1.0, ltr=1.0, lres=1.3, lgaz=1.5,
    zeta0=1.0, zeta1=1.0, zeta2=1.0, zeta3=1.0, zeta4=1.0, zeta5=1.0, zeta6=1.0, zeta7=1.0, zeta8=1.0)

POINTS = [  # Fz (N), slip ratio, slip angle (rad), camber (rad)
    (4000.0, 0.0, 0.0, 0.0),
    (4000.0, 0.1, 0.0, 0.0),
    (3000.0, -0.05, 0.05, 0.02),
    (5500.0, 0.03, -0.1, -0.03),
    (2000.0, 0.2, 0.15, 0.05),
]


def s(v):
    return 1.0 if v >= 0 else -1.0


def stored(Fz, kappa, alpha, gamma):
    return Fz * 0.001, kappa * 100.0, alpha * R2D, gamma * R2D


def pac96(p, Fz, kappa, alpha, gamma):
    Fz, k, a, g = stored(Fz, kappa, alpha, gamma)
    Fz2, ag = Fz * Fz, abs(g)

    def mf(B, C, D, E, Sv, x):
        return D * sin(C * atan(B * x - E * (B * x - atan(B * x)))) + Sv
    # Fx
    C = p['b0']; D = Fz * (p['b1'] * Fz + p['b2']); CD = (p['b1'] * Fz + p['b2']) * p['b0'] * Fz
    B = 99999.0 if abs(CD) < 1e-5 else (p['b3'] * Fz2 + p['b4'] * Fz) * exp(-p['b5'] * Fz) / CD
    E = min(p['b6'] * Fz2 + p['b7'] * Fz + p['b8'], 1.0)
    Sh = p['b9'] * Fz + p['b10']; Sv = p['b11'] * Fz + p['b12']
    Fx = mf(B, C, D, E, Sv, k + Sh)
    stats = dict(longStiffness=B * C * D, peakFx=Sv + D, Bx=B, Cx=C, Dx=D)
    # Fy
    C = p['a0']; D = Fz * (p['a1'] * Fz + p['a2']); E = min(p['a6'] * Fz + p['a7'], 1.0)
    CD = (p['a1'] * Fz + p['a2']) * p['a0'] * Fz
    BCD = p['a3'] * sin(2 * atan(Fz / p['a4'])) * (1 - p['a5'] * ag)
    B = BCD / CD
    Sv = ((p['a111'] * Fz + p['a112']) * g + p['a12']) * Fz + p['a13']
    Sh = p['a8'] * g + p['a9'] * Fz + p['a10']
    Fy = mf(B, C, D, E, Sv, a + Sh)
    stats.update(corneringStiffness=BCD * R2D, peakFy=Sv + D, By=B, Cy=C, Dy=D)
    # Mz
    C = p['c0']; D = (p['c1'] * Fz + p['c2']) * Fz
    E = min((p['c7'] * Fz2 + p['c8'] * Fz + p['c9']) * (1 - p['c10'] * ag), 1.0)
    CD = (p['c1'] * Fz2 + p['c2'] * Fz) * p['c0']
    B = (p['c3'] * Fz2 + p['c4'] * Fz) * (1 - p['c6'] * ag) * exp(-p['c5'] * Fz) / CD
    Sh = p['c11'] * g + p['c12'] * Fz + p['c13']
    Sv = (p['c14'] * Fz2 + p['c15'] * Fz) * g + p['c16'] * Fz + p['c17']
    Mz = mf(B, C, D, E, Sv, a + Sh)
    # friction limits
    Lx = abs(p['b2'] * 0.001 * 2 * Fz * 1000); Ly = abs(p['a2'] * 0.001 * 2 * Fz * 1000)
    return clamp(Fx, Lx), clamp(Fy, Ly), Mz, stats


def clamp(v, L):
    return -L if v < -L else (L if v > L else v)


def MFarg(B, C, E, x):
    return C * atan(B * x - E * (B * x - atan(B * x)))


def mf52(p, Fz_N, kappa, alpha, gamma, mf61=False):
    FzkN, k, a, g = stored(Fz_N, kappa, alpha, gamma)
    Fz = FzkN * 1000; kap = k * 0.01; al = a * D2R; ga = g * D2R
    Fz0s = p['fz0'] * p['lfz0']; dfz = (Fz - Fz0s) / Fz0s
    gx, gy, gz = p['lgax'] * ga, p['lgay'] * ga, p['lgaz'] * ga
    SHx = (p['phx1'] + p['phx2'] * dfz) * p['lhx']; kx = kap + SHx
    SVx = Fz * (p['pvx1'] + p['pvx2'] * dfz) * p['lvx'] * p['lmux']
    Cx = p['pcx1'] * p['lcx']
    Dx = (p['pdx1'] + p['pdx2'] * dfz) * (1 - p['pdx3'] * gx * gx) * p['lmux'] * Fz
    Ex = min((p['pex1'] + p['pex2'] * dfz + p['pex3'] * dfz ** 2) * (1 - p['pex4'] * s(kx)) * p['lex'], 1.0)
    Kx = Fz * (p['pkx1'] + p['pkx2'] * dfz) * exp(p['pkx3'] * dfz) * p['lkx']
    CD = Cx * Dx; CD = CD + 0.001 if abs(CD) < 0.001 else CD
    Bx = Kx / CD
    Fx0 = Dx * sin(MFarg(Bx, Cx, Ex, kx)) + SVx
    Cy = p['pcy1'] * p['lcy']
    Dy = (p['pdy1'] + p['pdy2'] * dfz) * (1 - p['pdy3'] * gy * gy) * p['lmuy'] * Fz
    Ky = p['pky1'] * Fz0s * sin(2 * atan(Fz / (p['pky2'] * Fz0s))) * (1 - p['pky3'] * abs(gy)) * p['lfz0'] * p['lky']
    CD = Cy * Dy; CD = CD + 0.001 if abs(CD) < 0.001 else CD
    By = Ky / CD
    SHy = (p['phy1'] + p['phy2'] * dfz) * p['lhy'] + p['phy3'] * gy; ay = al + SHy
    SVy = Fz * ((p['pvy1'] + p['pvy2'] * dfz) * p['lvy'] + (p['pvy3'] + p['pvy4'] * dfz) * gy) * p['lmuy']
    Ey = min((p['pey1'] + p['pey2'] * dfz) * (1 - (p['pey3'] + p['pey4'] * gy) * s(ay)) * p['ley'], 1.0)
    Fy0 = Dy * sin(MFarg(By, Cy, Ey, ay)) + SVy
    SHt = p['qhz1'] + p['qhz2'] * dfz + (p['qhz3'] + p['qhz4'] * dfz) * gz; at = al + SHt
    if abs(Ky) < 0.001:
        Ky = 0.001 if Ky >= 0 else -0.001
    SHf = SHy + SVy / Ky; ar = al + SHf
    Bt = (p['qbz1'] + p['qbz2'] * dfz + p['qbz3'] * dfz ** 2) * (1 + p['qbz4'] * gz + p['qbz5'] * abs(gy)) * p['lky'] / p['lmuy']
    Ct = p['qcz1']
    Dt = Fz * (p['qdz1'] + p['qdz2'] * dfz) * (1 + p['qdz3'] * gz + p['qdz4'] * gz * gz) * (p['r0'] / Fz0s) * p['ltr']
    Et = min((p['qez1'] + p['qez2'] * dfz + p['qez3'] * dfz ** 2) * (1 + (p['qez4'] + p['qez5'] * gz) * (2 / pi) * atan(Bt * Ct * at)), 1.0)
    Br = p['qbz9'] * p['lky'] / p['lmuy'] + p['qbz10'] * By * Cy
    lr = p['ltr'] if mf61 else p['lres']
    Dr = Fz * ((p['qdz6'] + p['qdz7'] * dfz) * lr + (p['qdz8'] + p['qdz9'] * dfz) * gz) * p['r0'] * p['lmuy']
    Bxa = p['rbx1'] * cos(atan(p['rbx2'] * kap)) * p['lxal']
    Cxa, Exa, SHxa = p['rcx1'], p['rex1'] + p['rex2'] * dfz, p['rhx1']
    G0 = cos(MFarg(Bxa, Cxa, Exa, SHxa))
    Gxa = 0 if abs(G0) <= 1e-5 else cos(MFarg(Bxa, Cxa, Exa, al + SHxa)) / G0
    Fx = Gxa * Fx0
    SVyk = cos(atan(p['rvy4'] * al)) * (p['rvy1'] + p['rvy2'] * dfz + p['rvy3'] * ga) * p['fyShiftScale'] * FzkN * sin(p['rvy5'] * atan(p['rvy6'] * kap)) * p['lvyka']
    Byk = p['rby1'] * cos(atan(p['rby2'] * (al - p['rby3']))) * p['lyka']
    Cyk, Eyk, SHyk = p['rcy1'], p['rey1'] + p['rey2'] * dfz, p['rhy1'] + p['rhy2'] * dfz
    Gyk = cos(MFarg(Byk, Cyk, Eyk, kap + SHyk)) / cos(MFarg(Byk, Cyk, Eyk, SHyk))
    Fy = Gyk * Fy0 + SVyk
    r = (Kx / Ky) ** 2 * kap ** 2
    ateq = sqrt(at * at + r) * s(at); areq = sqrt(ar * ar + r) * s(ar)
    Mz = (Dr * cos(atan(Br * areq)) * cos(al) - Dt * cos(MFarg(Bt, Ct, Et, ateq)) * cos(al) * (Fy - SVyk)
          + (p['ssz1'] + p['ssz2'] * Fy / Fz0s + (p['ssz3'] + p['ssz4'] * dfz) * ga) * p['r0'] * p['ls'] * Fx)
    Fy, Mz = -Fy, -Mz
    stats = dict(longStiffness=Bx * Cx * Dx, corneringStiffness=-(By * Cy * Dy) * R2D, peakFx=Dx + SVx, peakFy=SVy + Dy)
    L = 2 * Fz  # limits: mu * 2 * Fz
    return clamp(Fx, abs(p['pdx1'] * L)), clamp(Fy, abs(p['pdy1'] * L)), Mz, stats


def pac2006(p, Fz_N, kappa, alpha, gamma, a2=0.0, b2=0.0):
    FzkN, k, a, g = stored(Fz_N, kappa, alpha, gamma)
    Fz = FzkN * 1000; kap = k * 0.01; al = a * D2R; gs = sin(g * D2R)
    z = [p['zeta%d' % i] for i in range(9)]
    Fz0s = p['fz0'] * p['lfz0']; inv = 1 / Fz0s; dfz = (Fz - Fz0s) * inv
    SVx = 0.0
    SHx = (p['phx1'] + p['phx2'] * dfz) * p['lhx']; kx = kap + SHx
    Cx = p['pcx1'] * p['lcx']
    Ex = (p['pex1'] + p['pex2'] * dfz + p['pex3'] * dfz ** 2) * (1 - p['pex4'] * s(kx)) * p['lex']
    Dx = (p['pdx1'] + p['pdx2'] * dfz) * p['lmux'] * Fz * z[1]
    Kx = Fz * (p['pkx1'] + p['pkx2'] * dfz) * exp(p['pkx3'] * dfz) * p['lkx']
    Bx = Kx / (Cx * Dx + (0.1 if abs(Cx * Dx) < 0.001 else 0))
    Fx0 = Dx * sin(MFarg(Bx, Cx, Ex, kx)) + SVx
    Cy = p['pcy1'] * p['lcy']
    Dy = (p['pdy1'] + p['pdy2'] * dfz) * (1 - p['pdy3'] * gs ** 2) * p['lmuy'] * Fz * z[2]
    Kya = p['pky1'] * Fz0s * sin(2 * atan(Fz / (p['pky2'] * Fz0s))) * p['lyka'] * (1 - p['pky3'] * gs ** 2) * z[3]
    By = Kya / (Cy * Dy + (0.001 if abs(Cy * Dy) < 0.001 else 0))
    SHy = (p['phy1'] + p['phy2'] * dfz) * p['lhy'] + p['phy3'] * gs * p['lky'] * z[0] + z[4] - 1; ay = al + SHy
    SVy = Fz * (p['pvy1'] + p['pvy2'] * dfz) * p['lvy'] * p['lmuy'] * z[2] + Fz * (p['pvy3'] + p['pvy4'] * dfz) * gs * p['lky'] * p['lmuy'] * z[2]
    Ey = (p['pey1'] + p['pey2'] * dfz) * (1 - (p['pey3'] + p['pey4'] * gs) * s(ay)) * p['ley']
    Fy0 = Dy * sin(MFarg(By, Cy, Ey, ay)) + SVy
    SHt = p['qhz1'] + p['qhz2'] * dfz + (p['qhz3'] + p['qhz4'] * dfz) * gs; at = al + SHt
    Kp = max(Kya, 0.01) if Kya == Kya else Kya
    SHf = SHy + SVy / Kp; ar = al + SHf
    Bt = (p['qbz1'] + p['qbz2'] * dfz + p['qbz3'] * dfz ** 2) * (1 + p['qbz5'] * abs(gs) + p['qbz6'] * gs ** 2) * p['lyka'] / p['lmuy']
    Ct = p['qcz1']
    Dt = Fz * (p['qdz1'] + p['qdz2'] * dfz) * p['r0'] * inv * p['ltr'] * (1 + p['qdz3'] * abs(gs) + p['qdz4'] * gs ** 2) * z[5]
    Et = (p['qez1'] + p['qez2'] * dfz + p['qez3'] * dfz ** 2) * (1 + (p['qez4'] + p['qez5'] * gs) * (2 / pi) * atan(Bt * Ct * at))
    Br = (p['qbz9'] * p['lky'] / p['lmuy'] + p['qbz10'] * By * Cy) * z[6]; Cr = z[7]
    Dr = cos(at) * Fz * p['r0'] * ((p['qdz6'] + p['qdz7'] * dfz) * p['lres'] * z[2] + (p['qdz8'] + p['qdz9'] * dfz) * gs * p['lky'] * z[0])
    Bxa = cos(atan(p['rbx2'] * kap)) * (p['rbx1'] + p['rbx3'] * gs ** 2) * p['lxal']
    Cxa, Exa, SHxa = p['rcx1'], p['rex1'] + p['rex2'] * dfz, p['rhx1']
    G0 = cos(MFarg(Bxa, Cxa, Exa, SHxa))
    Gxa = cos(MFarg(Bxa, Cxa, Exa, al + SHxa)) / G0 if abs(G0) > 1e-5 else 0
    Fx = Gxa * Fx0
    SVyk = cos(atan(p['rvy4'] * al)) * (p['rvy1'] + p['rvy2'] * dfz + p['rvy3'] * gs) * p['fyShiftScale'] * FzkN * z[2] * sin(p['rvy5'] * atan(p['rvy6'] * kap)) * p['lvyka']
    Byk = cos(atan(p['rby2'] * (al - p['rby3']))) * (p['rby1'] + p['rby4'] * gs ** 2) * p['lyka']
    Cyk, Eyk, SHyk = p['rcy1'], p['rey1'] + p['rey2'] * dfz, p['rhy1'] + p['rhy2'] * dfz
    Gyk = cos(MFarg(Byk, Cyk, Eyk, kap + SHyk)) / cos(MFarg(Byk, Cyk, Eyk, SHyk))
    Fy = Gyk * Fy0 + SVyk
    r = (Kx / Kp) ** 2 * kap ** 2
    ateq = sqrt(at * at + r) * s(at); areq = sqrt(ar * ar + r) * s(ar)
    t = -Dt * cos(MFarg(Bt, Ct, Et, ateq)) * cos(al) * (Fy - SVyk)
    rr = Dr * cos(Cr * atan(Br * areq))
    st = (p['ssz1'] + p['ssz2'] * Fy * inv + (p['ssz3'] + p['ssz4'] * dfz) * gs) * p['r0'] * p['ls'] * Fx
    Mz = t + rr + st
    Fy = -Fy
    stats = dict(longStiffness=Bx * Cx * Dx, corneringStiffness=-(By * Cy * Dy) * R2D)
    Lx = abs(b2 * 0.001 * 2 * Fz); Ly = abs(a2 * 0.001 * 2 * Fz)
    return clamp(Fx, Lx), clamp(Fy, Ly), Mz, stats


def row(pt, res, keys):
    Fx, Fy, Mz, st = res
    vals = list(pt) + [Fx, Fy, Mz] + [st[k] for k in keys]
    return "    {" + ", ".join("%.9g" % v for v in vals) + "},"


if __name__ == "__main__":
    print("// Pacejka89/96, touring set: Fz kappa alpha gamma | Fx Fy Mz | longStiffness corneringStiffness peakFx peakFy Bx Cx Dx By Cy Dy")
    keys = "longStiffness corneringStiffness peakFx peakFy Bx Cx Dx By Cy Dy".split()
    for pt in POINTS:
        print(row(pt, pac96(PAC96, *pt), keys))
    keys = "longStiffness corneringStiffness peakFx peakFy".split()
    print("// Magic Formula 5.2")
    for pt in POINTS:
        print(row(pt, mf52(MF, *pt), keys))
    print("// Magic Formula 6.1")
    for pt in POINTS:
        print(row(pt, mf52(MF, *pt, mf61=True), keys))
    print("// Pacejka2006 (a2 = b2 = 1500 for the limits)")
    keys = "longStiffness corneringStiffness".split()
    for pt in POINTS:
        print(row(pt, pac2006(MF, *pt, a2=1500.0, b2=1500.0), keys))
