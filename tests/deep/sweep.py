"""Inputs whose outputs hang on how a machine computes: numbers in every spelling, integers of any size, counts
below zero, files of more than 2 GiB. No result is known beforehand; all machines must agree on it.
"""
import random
import struct

VECTORS = 8000
POLYGONS = 3000
FACTORS = 3000
LARGE = 2200 << 20  # above what a 32-bit offset reaches

# The words of each run; the output is always a.tmd.
RUNS = (
    ("-s", "1", "numbers"),
    ("-s", "0.3", "numbers"),
    ("-sa", "0.33333333", "numbers"),
    ("-sa", "1.1", "numbers"),
    ("-sa", "7.5e-3", "-t", "5", "-3", "77", "numbers"),
    ("-sa", "1000000.1", "-t", "99999999999", "-4294967298", "99999999999999999999", "numbers"),
    ("factors.arg",),
    ("-info", "integers"),
    ("-v", "below"),
    ("-v", "-id", "integers.prj", "point", "below"),
    ("large",),
    ("-v", "-info", "cube", "crate", "lamp"),
    ("-a", "-v", "-info", "cube", "crate", "lamp"),
    ("-b", "-v", "-info", "cube", "crate", "lamp"),
)


def real(source):
    """A real number near the coordinates' range or anywhere a float can be, as any program may write it."""
    near = source.uniform(-40000, 40000)
    any_float = struct.unpack("f", struct.pack("I", source.getrandbits(32)))[0]
    return source.choice((
        lambda: f"{source.randrange(-40000, 40000)}.5",
        lambda: repr(near),
        lambda: f"{any_float:.9g}",
        lambda: f"{source.uniform(-1, 1) * 10 ** source.randrange(-46, 40):.{source.randrange(25)}e}",
        lambda: float.hex(near),
        lambda: f"{source.randrange(-3000, 3000)}.{source.randrange(10 ** source.randrange(1, 12))}",
    ))()


def integer(source):
    """A whole number of up to 24 digits."""
    size = 10 ** source.randrange(1, 25)
    return source.choice(("", "+", "-", "00")) + str(source.randrange(size))


def hexadecimal(source):
    return source.choice(("", "0x", "+", "-", "0X000")) + f"{source.getrandbits(source.randrange(1, 96)):x}"


def factor(source):
    """A scale factor that is no power of two, nor next to one: there the last bit of the C library's logarithm
    decides, and libraries differ in it."""
    return repr(source.uniform(1.0001, 1.9999) * 2.0 ** source.randrange(-1000, 1000))


def write_object(folder, name, ply, mat):
    (folder / f"{name}.rsd").write_text(f"@RSD940102\nPLY={name}.ply\nMAT={name}.mat\nNTEX=0\n")
    (folder / f"{name}.ply").write_text("@PLY940102\n" + "\n".join(ply) + "\n")
    (folder / f"{name}.mat").write_text("@MAT940102\n" + "\n".join(mat) + "\n")


def write_inputs(folder, samples):
    """Writes all input files into `folder`, the same at every call."""
    source = random.Random(19961001)
    for sample in sorted(samples.iterdir()):
        (folder / sample.name).write_bytes(sample.read_bytes())
    write_object(folder, "point", ["1 0 0", "1 2 3"], ["0"])
    write_object(folder, "below", ["-1 -2147483648 -3", ""], ["-1"])
    write_object(folder, "numbers",
                 [f"{VECTORS} {VECTORS} 0"] +
                 [" ".join(real(source) for _ in range(3)) for _ in range(2 * VECTORS)], ["0"])
    write_object(folder, "integers",
                 [f"1 1 {POLYGONS}", "0 0 0", "0 0 1"] +
                 [" ".join([hexadecimal(source), *(integer(source) for _ in range(8))])
                  for _ in range(POLYGONS)],
                 [str(POLYGONS)] +
                 [" ".join([str(i), hexadecimal(source), source.choice("FG"), "C",
                            *(integer(source) for _ in range(3))]) for i in range(POLYGONS)])
    words = [f"-s {factor(source)} point" for _ in range(FACTORS)]
    (folder / "factors.arg").write_text("\n".join(words) + "\n")
    (folder / "integers.prj").write_text("@PRJ940401\n-\n" + "".join(
        f"{integer(source)} point\n{integer(source)} below\n" for _ in range(20)))
    write_object(folder, "large", ["1 0 0", "1 2 3"], ["0"])
    with open(folder / "large.ply", "r+b") as large:
        large.truncate(LARGE)
