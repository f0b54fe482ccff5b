# bench/rivals/workloads.py -- what is measured: one record a workload.
#
# name; family and size, from which the growth is taken; ring (float, integers, prime, fractions);
# variables; values (name, text or list of terms); work: what a round computes, the last one checked at the
# point. Where the systems' languages part, "own" has the statements of each; a system in "skip" is left out,
# with the reason beside it. A "named" one is long and runs only when its name is asked for.
import itertools
import random

FLOAT_POINT = ["0.5", "0.25", "1.5", "0.75"]
KELMAR_PROGRAM = {"float": "kelmar", "integers": "kelmar-exact", "fractions": "kelmar-exact",
                  "prime": "kelmar-exact"}


def workload(name, family, size, ring, variables, values, work, point, **more):
    record = {"name": name, "family": family, "size": size, "ring": ring, "variables": list(variables),
              "values": values, "work": work, "point": point, "prime": 0, "own": {}, "skip": [],
              "named": False}
    record.update(more)
    return record


# Operands -------------------------------------------------------------------------------------------------


def dense_terms(source, degree, fractions):
    def coefficient():
        return "0.%d" % source.randrange(101, 1000) if fractions else "%d.0" % source.randrange(1, 100)
    return ["%s*x^%d" % (coefficient(), e) for e in range(degree, -1, -1)]


def sparse_terms(source, count, variables, degree, coefficient):
    exponents = set()
    while len(exponents) < count:
        exponents.add(tuple(source.randrange(degree) for _ in variables))
    return ["%s*%s" % (coefficient(source), "*".join("%s^%d" % pair for pair in zip(variables, each)))
            for each in sorted(exponents, reverse=True)]


def small_whole(source):
    return source.choice([-1, 1]) * source.randrange(1, 100)


def small_real(source):
    return "%d.0" % source.randrange(1, 100)


def factor(source, variables, degree, count):
    """Terms of one factor: all up to the degree in each variable, or so many."""
    total = (degree + 1) ** len(variables)
    return sparse_terms(source, count or total, variables, degree + 1, small_whole)


def gcd_workload(name, variables, degree, count, pairs, shared, size, **more):
    source = random.Random(1)
    values, work = [], []
    for i in range(1, pairs + 1):
        parts = [("g%d" % i, factor(source, variables, degree, count)), ("a%d" % i, factor(source, variables,
                                                                                           degree, count)),
                 ("b%d" % i, factor(source, variables, degree, count))]
        values += parts
        first = "g%d*a%d" % (i, i)
        second = "g%d*b%d" % (i, i)
        if not shared:
            values.append(("c%d" % i, factor(source, variables, degree, count)))
            second = "b%d*c%d" % (i, i)
        values += [("f%d" % i, first), ("h%d" % i, second)]
        work.append("gcd(f%d,h%d)" % (i, i))
    return workload(name, "gcd", size, "integers", variables, values, work, [2, 3, 5, 7,
                                                                             11][:len(variables)], **more)


def gcd_pair(names, shape, power, side, terms, shared):
    """One gcd of two operands of four factors, two of them the same when shared.

    Dense: the operands have all side^n terms, the factors all up to half of the degree in each variable.
    Sparse: the factors have so many terms of random exponents below the side, the operands some terms^2.
    """
    source = random.Random(6)
    if shape == "dense":
        small = (side - 1) // 2
        degrees, counts = [small, side - 1 - small, side - 1 - small, small], [0] * 4
        size = side ** len(names)
    else:
        degrees, counts, size = [side - 1] * 4, [terms] * 4, terms ** 2
    g, a, b, c = (factor(source, names, degree, count) for degree, count in zip(degrees, counts))
    values = [("g", g), ("a", a), ("b", b), ("c", c), ("f", "g*a"), ("h", "g*b" if shared else "b*c")]
    return workload("gcd, %d variables, %s, 10^%d terms, %s" % (len(names), shape, power, "common factor"
                                                                if shared else "coprime"), "gcd", size,
                    "integers", names, values, ["gcd(f,h)"], [2, 3, 5, 7, 11][:len(names)], named=True,
                    skip=["Maxima", "GiNaC", "FriCAS", "SymPy"])  # the rows would take hours with them


def gcd_pairs():
    """2 to 5 variables, dense and sparse, operands of about 10^2, 10^3 and 10^4 terms."""
    sides = {"dense": {2: [10, 32, 100], 3: [5, 10, 21], 4: [3, 6, 10], 5: [3, 4, 6]},
             "sparse": {2: [20, 40, 100], 3: [10, 20, 30], 4: [7, 10, 15], 5: [5, 7, 10]}}
    for step, shared, count, shape in itertools.product(range(3), (True, False), range(2, 6), sides):
        side = sides[shape][count][step]
        yield gcd_pair("xyztu"[:count], shape, step + 2, side, [10, 32, 100][step], shared)


def fraction_sum(count):
    source = random.Random(2)

    def linear():
        return "(%d*x+%d*y+%d*z+%d)" % tuple(source.randrange(1, 10) for _ in range(4))
    forms = [linear() for _ in range(6)]
    values = []
    for i in range(1, count + 1):
        values.append(("n%d" % i, linear()))
        values.append(("d%d" % i, "*".join(source.sample(forms, source.randrange(1, 4)))))
    total = "+".join("n%d/d%d" % (i, i) for i in range(1, count + 1))
    return workload("sum of %d fractions, 3 variables" % count, "fractions", count, "fractions", "xyz",
                    values, [total],
                    [2, 3, 5], skip=["FLINT/GMP"])  # FLINT 2.9 has no sums of fractions in several variables


def float_fraction_sum(count):
    """The same over doubles. Singular has no fractions of them; its gcd knows reals, and pairs are added."""
    work = fraction_sum(count)
    work.update(name="sum of %d fractions, 3 variables, doubles" % count, family="float fractions",
                ring="float", point=["0.5", "0.25", "1.5"],
                skip=["gp", "Maxima", "GiNaC", "FriCAS", "SymPy", "FLINT/GMP"])
    pair = ("poly top; poly den; poly c; proc plus(poly n, poly d) {c=gcd(den,d); top=top*(d/c)+n*(den/c); "
            "den=(den/c)*d; return();}")
    setup = [pair] + ["poly %s=%s;" % value for value in work["values"]]
    work["own"] = {"Singular": {
        "setup": setup,
        "work": "top=0; den=1; " + " ".join("plus(n%d,d%d);" % (i, i) for i in range(1, count + 1)),
        "check": "subst(top,x,0.5,y,0.25,z,1.5)/subst(den,x,0.5,y,0.25,z,1.5)"}}
    return work


# Records --------------------------------------------------------------------------------------------------


def power_product(k):
    terms = (k + 1) * (k + 2) * (k + 3) * (k + 4) // 24
    return workload("f (f + 1), f = (1+x+y+z+t)^%d, doubles" % k, "dense power", terms ** 2, "float", "xyzt",
                    [("f", "(1.0+x+y+z+t)^%d" % k)], ["f*(f+1)"], FLOAT_POINT, skip=["FLINT/GMP"])


def dense_product(degree, fractions):
    source = random.Random(3)
    values = [("f", dense_terms(source, degree, fractions)), ("g", dense_terms(source, degree, fractions))]
    return workload("dense, one variable, degree %d, %s doubles" % (degree, "any" if fractions else "whole"),
                    "dense %s" % fractions, degree, "float", "x", values, ["f*g"], ["0.5"],
                    skip=["FLINT/GMP"])


def sparse_product(count):
    source = random.Random(4)
    values = [(name, sparse_terms(source, count, "xyz", 1000, small_real)) for name in "fg"]
    return workload("sparse, 3 variables, %d by %d terms, doubles" % (count, count), "sparse", count ** 2,
                    "float", "xyz",
                    values, ["f*g"], ["0.99", "0.995", "1.001"], skip=["FLINT/GMP"])


def prime_gcd(degree):
    source = random.Random(5)

    def dense(d):
        return ["%d*x^%d" % (source.randrange(1, 65521), e) for e in range(d, -1, -1)]
    third = degree // 3
    values = [("g", dense(third)), ("a", dense(degree - third)), ("b", dense(degree - third)), ("f", "g*a"),
              ("h", "g*b")]
    own = {"gp": {"check": "lift(subst(r/pollead(r),x,2))"}, "Kelmar": {"check": "Monic(r)#(x = 2)"},
           "Singular": {"check": "leadcoef(subst(r/leadcoef(r),x,2))"},
           "FriCAS": {"check": "(r.2)/leadingCoefficient(r)"},
           "SymPy": {"check": "check(r.monic(), [2]) % 65521"},
           "Maxima": {"check": "mod(subst(2,x,ratdisrep(r/ratcoef(r,x,hipow(ratdisrep(r),x)))),65521)"}}
    return workload("gcd modulo 65521, degree %d" % degree, "prime gcd", degree, "prime", "x", values,
                    ["gcd(f,h)"], [2],
                    prime=65521, own=own, skip=["GiNaC"])  # has no polynomials modulo a prime


def matrix_product(n):
    own = {
        "Kelmar": ("[a] := [<i = 1, N> <j = 1, N> [1.0/(i + j)]]:", "[b] := [a]*[a]", "Trace[b]"),
        "gp": ("a=matrix(N,N,i,j,1.0/(i+j));", "b=a*a", "trace(b)"),
        "Singular": ("matrix a[N][N]; matrix b; int i; int j;"
                     "for(i=1;i<=N;i++){for(j=1;j<=N;j++){a[i,j]=poly(1)/number(i+j);}}", "b=a*a",
                     "trace(b)"),
        "Maxima": ("a:genmatrix(lambda([i,j],1.0/(i+j)),N,N)$", "b:a.a", "sum(b[i,i],i,1,N)"),
        "FriCAS": ("a : Matrix DFLOAT := matrix [[(1.0/(i+j))::DFLOAT for j in 1..N] for i in 1..N]",
                   "b := a*a",
                   "reduce(+, [b(i,i) for i in 1..N])"),
        "SymPy": ("from sympy.polys.matrices import DomainMatrix\na = DomainMatrix([[RR(1.0/(i+j)) "
                  "for j in range(1,N+1)] for i in range(1,N+1)], (N,N), RR)", "b = a*a",
                  "sum(b[i,i].element for i in range(N))"),
    }
    for system, texts in own.items():
        setup, body, check = (text.replace("N", str(n)) for text in texts)
        own[system] = {"setup": [setup], "work": body, "check": check}
    return workload("matrix product %d x %d, doubles" % (n, n), "matrix", n, "float", "", [], ["a*a"], [],
                    own=own,
                    skip=["GiNaC",
                          "FLINT/GMP"])  # ginsh reads no matrix by a rule; FLINT 2.9 has no real ones


def printed(name, kelmar_text, texts, size):
    own = {"Kelmar": {"work": "Show(%s)" % kelmar_text, "check": "1"}}
    for system, (setup, body) in texts.items():
        own[system] = {"setup": setup, "work": body, "check": "1"}
    return workload(name, name, size, "integers", "", [], [], [], own=own,
                    skip=["GiNaC"])  # the clock of ginsh does not see the text


WORKLOADS = [power_product(8), power_product(12), power_product(16)]
WORKLOADS += [dense_product(2000, False), dense_product(20000, False), dense_product(2000, True),
              dense_product(20000, True)]
WORKLOADS += [sparse_product(1000), sparse_product(3000)]
WORKLOADS += [workload("f (f + 1), f = (1+x+y+z+t)^20, integers", "integer power", 10626 ** 2, "integers",
                       "xyzt",
                       [("f", "(1+x+y+z+t)^20")], ["f*(f+1)"], [2, 3, 5, 7])]
WORKLOADS += [gcd_workload("20 gcds, 2 variables, dense, 81 terms", "xy", 4, 0, 20, True, 81),
              gcd_workload("20 gcds, 3 variables, dense, 125 terms", "xyz", 2, 0, 20, True, 125),
              gcd_workload("20 gcds, 3 variables, sparse, 41 terms", "xyz", 4, 8, 20, True, 41),
              gcd_workload("20 gcds, 5 variables, sparse, 63 terms", "xyztu", 2, 8, 20, True, 63),
              gcd_workload("20 coprime pairs, 3 variables, 1000 terms", "xyz", 10, 33, 20, False, 1000)]
WORKLOADS += list(gcd_pairs())
WORKLOADS += [fraction_sum(20), fraction_sum(50), fraction_sum(200)]
WORKLOADS += [float_fraction_sum(20), float_fraction_sum(50), float_fraction_sum(200)]
WORKLOADS += [prime_gcd(5000)]
WORKLOADS += [matrix_product(300)]
WORKLOADS += [
    printed("20000! and its text", "20000!", {
        "gp": ([], "print(20000!)"), "Maxima": ([], "print(20000!)"),
        "Singular": (['LIB "general.lib";'], "print(string(factorial(20000)))"),
        "FriCAS": ([], "output string factorial 20000"),
        "SymPy": ([], "print(factorial(20000))"), "FLINT/GMP": ([], "print(factorial_text(20000))")}, 20000),
    printed("2^200000 and its text", "2^200000", {
        "gp": ([], "print(2^200000)"), "Maxima": ([], "print(2^200000)"),
        "Singular": (["bigint two=2;"], "print(string(two^200000))"),
        "FriCAS": ([], "output string (2^200000)"), "SymPy": ([], "print(2**200000)"),
        "FLINT/GMP": ([], "print(power_text(2,200000))")}, 200000)]
