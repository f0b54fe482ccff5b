# bench/rivals/flint_calls.py -- FLINT and GMP, called from the scripts of the benchmark.
#
# A value owns a buffer that is larger than the library's record. Operators make a new value and call once,
# so the clock around them sees the library and some microseconds of Python. Nothing is freed: a run is
# short.
import ctypes
import ctypes.util

flint = ctypes.CDLL(ctypes.util.find_library("flint") or "libflint.so")
gmp = ctypes.CDLL(ctypes.util.find_library("gmp") or "libgmp.so")
gmp.__gmpz_get_str.restype = ctypes.c_void_p
flint.fmpz_get_str.restype = ctypes.c_void_p
flint.nmod_poly_evaluate_nmod.restype = ctypes.c_ulong
flint.nmod_poly_evaluate_nmod.argtypes = [ctypes.c_void_p, ctypes.c_ulong]
libc = ctypes.CDLL(None)
libc.free.argtypes = [ctypes.c_void_p]

state = {"names": None, "context": ctypes.create_string_buffer(8192), "prime": 0}


def use(variables, prime):
    """The ring of all values made from here on."""
    names = [name.encode() for name in variables] or [b"x"]
    state["count"] = len(names)
    state["names"] = (ctypes.c_char_p * len(names))(*names)
    state["prime"] = prime
    flint.fmpz_mpoly_ctx_init(state["context"], ctypes.c_long(len(names)), ctypes.c_int(0))


def text_of(address):
    text = ctypes.string_at(address).decode()
    libc.free(address)
    return text


class Mpoly:
    def __init__(self):
        self.at = ctypes.create_string_buffer(64)
        flint.fmpz_mpoly_init(self.at, state["context"])

    def call(self, name, other):
        result = Mpoly()
        getattr(flint, "fmpz_mpoly_" + name)(result.at, self.at, other.at, state["context"])
        return result

    def __add__(self, other):
        return self.call("add", other if isinstance(other, Mpoly) else poly(str(other)))

    def __mul__(self, other):
        return self.call("mul", other)


class Nmod:
    def __init__(self):
        self.at = ctypes.create_string_buffer(64)
        flint.nmod_poly_init(self.at, ctypes.c_ulong(state["prime"]))

    def call(self, name, other):
        result = Nmod()
        getattr(flint, "nmod_poly_" + name)(result.at, self.at, other.at)
        return result

    def __mul__(self, other):
        return self.call("mul", other)

    def __add__(self, other):
        return self.call("add", other)


def poly(text):
    """A polynomial of its text; modulo a prime only sums of c*x**e are read."""
    if state["prime"]:
        result = Nmod()
        for term in text.split("+"):
            coefficient, power = term.split("*", 1)
            flint.nmod_poly_set_coeff_ui(result.at, ctypes.c_long(int(power.split("**")[1])),
                                         ctypes.c_ulong(int(coefficient) % state["prime"]))
        return result
    result = Mpoly()
    if flint.fmpz_mpoly_set_str_pretty(result.at, text.replace("**", "^").encode(), state["names"],
                                       state["context"]):
        raise ValueError(text[:60])
    return result


def gcd(a, b):
    return a.call("gcd", b)


def check(value, point):
    if state["prime"]:
        return flint.nmod_poly_evaluate_nmod(value.at, point[0])
    cells = [ctypes.c_long(number) for number in point]  # a small fmpz is the number itself
    pointers = (ctypes.c_void_p * len(cells))(*[ctypes.addressof(cell) for cell in cells])
    result = ctypes.c_long(0)
    flint.fmpz_mpoly_evaluate_all_fmpz(ctypes.byref(result), value.at, pointers, state["context"])
    return text_of(flint.fmpz_get_str(None, 10, ctypes.byref(result)))


def factorial_text(n):
    number = ctypes.create_string_buffer(16)
    gmp.__gmpz_init(number)
    gmp.__gmpz_fac_ui(number, ctypes.c_ulong(n))
    return text_of(gmp.__gmpz_get_str(None, 10, number))


def power_text(base, exponent):
    number = ctypes.create_string_buffer(16)
    gmp.__gmpz_init(number)
    gmp.__gmpz_ui_pow_ui(number, ctypes.c_ulong(base), ctypes.c_ulong(exponent))
    return text_of(gmp.__gmpz_get_str(None, 10, number))
