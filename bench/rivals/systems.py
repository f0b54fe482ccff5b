# bench/rivals/systems.py -- how to put one workload to each program.
#
# A system is a command and a function that writes a script. Every script makes the operands untimed, does
# the work a given number of times under the program's own clock of CPU time, and writes TIME and CHECK.
# TIME is in the system's ticks. CHECK is the result at a point (of a fraction its numerator), or what the
# workload says instead.
import os
import re
import shutil
import subprocess
import sys
from fractions import Fraction

here = os.path.dirname(os.path.realpath(__file__))

# Pieces of scripts ----------------------------------------------------------------------------------------


def chunks(terms, size):
    """A sum of terms as sums of at most size terms: no program has to read one line of a megabyte."""
    for first in range(0, len(terms), size):
        yield "+".join(terms[first:first + size]).replace("+-", "-")


def definitions(values, size, first, more):
    """Lines that make each value: a text as it stands, a list of terms in chunks."""
    for name, value in values:
        parts = [value] if isinstance(value, str) else list(chunks(value, size))
        yield first % (name, parts[0])
        for part in parts[1:]:
            yield more % (name, name, part)


def fold(gcd, work):
    """The work's words for a common divisor in the program's own."""
    return work.replace("gcd(", gcd)


# Scripts: one function a system, (work, rounds) to text ---------------------------------------------------


def kelmar(work, rounds):
    own = work["own"].get("Kelmar", {})
    lines = ["&(p = %d)" % work["prime"]] if work["ring"] == "prime" else []
    lines += ["&(J = %s)" % name for name in reversed(work["variables"])]
    lines += own.get("setup") or definitions(work["values"], 20, "%s := %s:", "%s := %s + (%s):")
    body = own.get("work") or "; ".join("r := " + fold("GCD(", text) for text in work["work"])
    point = ", ".join("%s = %s" % pair for pair in zip(work["variables"], work["point"]))
    check = own.get("check") or "r#(%s)" % point
    lines += ["tstart := &T:", "for round = 1 to %d do %s od:" % (rounds, body), "tstart := &T - tstart:",
              "!('TIME ', tstart)", "!('CHECK ', %s)" % check, "&q", ""]
    return "\n".join(lines)


def gp(work, rounds):
    own = work["own"].get("gp", {})
    values = [(name, modulo(work, value, "Mod(1,%d)*(%s)")) for name, value in work["values"]]
    lines = ['default(parisizemax,"4G");', "default(realprecision,15);", work["variables"] and "[%s];" %
             ",".join("'" + name for name in work["variables"]) or ""]
    lines += own.get("setup") or definitions(values, 20, "%s=%s;", "%s=%s+(%s);")
    body = own.get("work") or ";".join("r=" + text for text in work["work"])
    check = own.get("check") or at_point(work, "subst(%s,%s,%s)", "r")
    lines += ["tstart=getabstime();for(round=1,%d,%s);tstart=getabstime()-tstart;" % (rounds, body),
              'print("TIME ",tstart)', 'print("CHECK ",%s)' % check, ""]
    return "\n".join(lines)


def singular(work, rounds):
    own = work["own"].get("Singular", {})
    names = ",".join(work["variables"]) or "x"
    ring = {"float": "(real,15),(%s)" % names, "integers": "0,(%s)" % names,
            "fractions": "(0,%s),spare" % names,
            "prime": "%d,(%s)" % (work["prime"], names)}[work["ring"]]
    kind = "number" if work["ring"] == "fractions" else "poly"
    lines = ['system("--ticks-per-sec",1000);', "int tstart; int round; ring base=%s,dp; %s r;" % (ring,
                                                                                                   kind)]
    lines += own.get("setup") or definitions(work["values"], 20, kind + " %s=%s;", "%s=%s+(%s);")
    body = own.get("work") or ";".join("r=" + text for text in work["work"])
    check = own.get("check") or at_point(work, "subst(%s,%s,%s)", "poly(r)")
    if kind == "number":
        check = '+"/"+'.join("string(%s)" % at_point(work, "subst(%s,%s,%s)", "poly(%s(r))" % part)
                             for part in ("numerator", "denominator"))
    lines += ["tstart=timer; for(round=1;round<=%d;round++){%s;} tstart=timer-tstart;" % (rounds, body),
              'print("TIME "+string(tstart));', 'print("CHECK "+string(%s));' % check, "quit;", ""]
    return "\n".join(lines)


def maxima(work, rounds):
    own = work["own"].get("Maxima", {})
    lines = ["keepfloat:true$ ratprint:false$ display2d:false$ linel:100000$ ratfac:false$",
             "ratvars(%s)$" % ",".join(reversed(work["variables"]))]
    if work["ring"] == "prime":
        lines.append("modulus:%d$" % work["prime"])
    lines += own.get("setup") or definitions(work["values"], 20, "%s:rat(%s)$", "%s:%s+rat(%s)$")
    body = own.get("work") or ",".join("r:" + text for text in work["work"])
    point = ",".join("%s=%s" % pair for pair in zip(work["variables"], work["point"]))
    check = own.get("check") or "ratdisrep(at_point(r))"
    lines += ["at_point(p):=block([],for e in [%s] do p:subst(e,ratdisrep(p)),p)$" % point,
              "tstart:elapsed_run_time()$ for round:1 thru %d do (%s)$ tstart:elapsed_run_time()-tstart$"
              % (rounds, body), 'print("TIME",tstart)$', 'print("CHECK",%s)$' % check, ""]
    return "\n".join(lines)


def ginac(work, rounds):
    """ginsh has no loops: each round is a line of its own, and the times are added when they are read."""
    own = work["own"].get("GiNaC", {})
    lines = own.get("setup") or definitions(work["values"], 20, "%s=expand(%s):", "%s=%s+expand(%s):")
    lines = list(lines)
    form = {"fractions": "normal(%s)"}.get(work["ring"], "expand(%s)")
    body = own.get("work") or [text if "gcd(" in text else form % text for text in work["work"]]
    lines += ["time(%s);" % text for _ in range(rounds) for text in body]
    point = ",".join("%s==%s" % pair for pair in zip(work["variables"], work["point"]))
    lines += ["r=%s:" % body[-1], 'CHECK;', own.get("check") or "subs(r,{%s});" % point, ""]
    return "\n".join(lines)


def fricas(work, rounds):
    own = work["own"].get("FriCAS", {})
    base = {"float": "DFLOAT", "integers": "INT", "fractions": "INT",
            "prime": "PF %d" % work["prime"]}[work["ring"]]
    kind = "POLY " + base if len(work["variables"]) > 1 else "UP(x," + base + ")"
    lines = [")set messages type off", ")set messages autoload off", ")set output algebra off"]
    lines += own.get("setup") or definitions(work["values"], 100, "%%s := (%%s)::%s" % kind,
                                             "%%s := %%s + (%%s)::%s" % kind)
    body = own.get("work") or "; ".join("r := " + text for text in work["work"])
    names = ",".join("%s=%s" % pair for pair in zip(work["variables"], work["point"]))
    check = own.get("check") or ("eval(r,[%s])" % names
                                 if len(work["variables"]) > 1 else "r.(%s)" % work["point"][0])
    lines += ["tstart := integer(GET_-INTERNAL_-RUN_-TIME()$Lisp)",
              "for round in 1..%d repeat (%s)" % (rounds, body),
              "tstart := integer(GET_-INTERNAL_-RUN_-TIME()$Lisp) - tstart",
              'output concat ["TIME ", string tstart]',
              "checked := %s" % check, 'output "CHECK"', "output checked", ")quit", ""]
    return "\n".join(lines)


def python_like(work, rounds, head, definition, key):
    own = work["own"].get(key, {})
    values = [(name, starred(value)) for name, value in work["values"] if not made_of(work, value)]
    first, more = "%s = " + definition, "%s = %s + " + definition
    lines = head + list(own.get("setup") or definitions(values, 20, first, more))
    lines += ["%s = %s" % (name, value) for name, value in work["values"] if made_of(work, value)]
    body = own.get("work") or "; ".join("r = " + starred(text) for text in work["work"])
    check = own.get("check") or "check(r, [%s])" % ",".join(map(str, work["point"]))
    lines += ["import time", "tstart = time.process_time()", "for _ in range(%d): %s" % (rounds, body),
              "print('TIME', time.process_time() - tstart)", "print('CHECK', %s)" % check, ""]
    return "\n".join(lines)


# Imports, and the value at a point, for both kinds of ring elements.
SYMPY_HEAD = """import sys
sys.set_int_max_str_digits(0)
from sympy import *
from sympy.polys.rings import ring
from sympy.polys.fields import field
def gcd(a, b): return a.gcd(b)
def check(r, point):
    if hasattr(r, 'numer'): return Rational(*[int(check(p, point)) for p in (r.numer, r.denom)])
    gens = r.ring.gens
    return r.evaluate(list(zip(gens, point))) if len(gens) > 1 else r.evaluate(gens[0], point[0])
"""


def sympy(work, rounds):
    domain = {"float": "RR", "prime": "GF(%d)" % work["prime"]}.get(work["ring"], "ZZ")
    names = ",".join(work["variables"]) or "x"
    maker = "field" if work["ring"] == "fractions" else "ring"
    head = [SYMPY_HEAD, "the_ring, *gens = %s('%s', %s)" % (maker, names, domain), "%s, = gens" % names]
    return python_like(work, rounds, head, "the_ring(%s)", "SymPy")


def flint(work, rounds):
    head = ["import sys", "sys.set_int_max_str_digits(0)", "sys.path.insert(0, %r)" % here]
    head += ["from flint_calls import *", "use(%r, %d)" % (work["variables"], work["prime"])]
    return python_like(work, rounds, head, "poly('''%s''')", "FLINT/GMP")


def made_of(work, value):
    """Whether a value is a product of values, as in g1*a1."""
    names = {name for name, _ in work["values"]}
    return isinstance(value, str) and all(part in names for part in value.split("*"))


def modulo(work, value, form):
    """Terms with residues as coefficients; products of such values are right as they stand."""
    if work["ring"] != "prime" or isinstance(value, str):
        return value
    return [form % (work["prime"], term) for term in value]


def starred(text):
    return text.replace("^", "**") if isinstance(text, str) else [term.replace("^", "**") for term in text]


def at_point(work, form, text):
    for name, value in zip(work["variables"], work["point"]):
        text = form % (text, name, value)
    return text


# Commands, clocks, answers --------------------------------------------------------------------------------

# heading of the column; command; script; ticks of its clock in a second
SYSTEMS = [
    ("Kelmar", None, kelmar, 1e6),
    ("gp", ["gp", "-q", "-f"], gp, 1e3),
    ("Singular", ["Singular", "-q", "--no-rc"], singular, 1e3),
    ("Maxima", ["maxima", "--very-quiet"], maxima, 1),
    ("GiNaC", ["ginsh"], ginac, 1),
    ("FriCAS", ["fricas", "-nosman"], fricas, 100),
    ("SymPy", [sys.executable, "-"], sympy, 1),
    ("FLINT/GMP", [sys.executable, "-"], flint, 1),
]


def installed(name, command):
    probe = {"SymPy": "import sympy",
             "FLINT/GMP": "import sys; sys.path.insert(0, %r); import flint_calls" % here}
    if name in probe:
        return subprocess.run([sys.executable, "-c", probe[name]], stderr=subprocess.DEVNULL,
                              check=False).returncode == 0
    return command is None or shutil.which(command[0]) is not None


def answer(out):
    """(ticks, checksum) of what a program wrote; None for what is missing."""
    out = re.sub(r"\(\d+\) -> *", "", out)  # prompts of FriCAS
    out = re.sub(r"(\d) E(-?\d)", r"\1E\2", out)  # reals of gp
    times = re.findall(r"TIME\s+([0-9.eE+-]+)", out) or re.findall(r"^([0-9.eE+-]+)s\s*$", out, re.M)
    check = re.search(r"CHECK\W+?(-?[0-9][0-9.eE+-]*)", out)
    text = check.group(1) if check else None
    quotient = re.search(r"CHECK\W+?(-?[0-9]+)\)?/\(?([0-9]+)", out)  # not always in lowest terms
    if quotient:
        text = str(Fraction(int(quotient.group(1)), int(quotient.group(2))).numerator)
    return (sum(float(t) for t in times) if times else None), text
