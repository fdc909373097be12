"""The mutations of C++ sources that are formatted by clang-format, for mutate.py."""
import collections
import decimal
import re

TOKEN = re.compile(
    r"""(?P<skip>//[^\n]*|/\*.*?\*/|^[ \t]*\#(?:[^\n]*\\\n)*[^\n]*
               |"(?:\\.|[^"\\\n])*"|'(?:\\.|[^'\\\n])+')
      |(?P<number>0[xX][\da-fA-F]+|(?:\d[\d']*\.?\d*|\.\d+)(?:[eE][+-]?\d+)?)(?P<suffix>[fFuUlL]*)
      |(?P<word>[A-Za-z_]\w*)
      |(?P<op>->|::|<<=?|>>=?|[<>=!]=|&&|\|\||\+\+|--|[-+*/%&|^]=|[-+*/%<>=!&|^~?:;,.(){}\[\]])""",
    re.X | re.M | re.S)

# Binary operators have blanks on both sides; brackets of templates and unary operators do not.
BINARY = {"<": ("<=", ">="), "<=": ("<", ">"), ">": (">=", "<="), ">=": (">", "<"),
          "==": ("!=",), "!=": ("==",), "&&": ("||",), "||": ("&&",), "&": ("|",), "|": ("&",),
          "+": ("-",), "-": ("+",), "*": ("/",), "/": ("*",), "%": ("*",), "<<": (">>",),
          ">>": ("<<",), "+=": ("-=",), "-=": ("+=",), "*=": ("/=",), "/=": ("*=",)}
UNARY = {"++": ("--",), "--": ("++",), "!": ("",), "-": ("",)}
KEYWORDS = {"true": ("false",), "false": ("true",), "break": ("continue",), "continue": ("break",)}
FUNCTIONS = {"min": ("max",), "max": ("min",), "fmin": ("fmax",), "fmax": ("fmin",),
             "floor": ("ceil",), "ceil": ("floor",), "lower_bound": ("upper_bound",),
             "upper_bound": ("lower_bound",)}
RELATIONS = {"<", "<=", ">", ">=", "==", "!="}
NO_STATEMENT = set("return if for while switch do else case default using typedef template class "
                   "struct enum namespace const constexpr static throw public private auto void "
                   "bool int double".split())
AFTER_NAME = {".", "->", "(", "[", "=", "++", "--", "+=", "-=", "*=", "/=", "|=", "&="}


def tokens_of(source):
    return [m for m in TOKEN.finditer(source) if m.lastgroup != "skip"]


def closing(words, i):
    """The index of the bracket that closes the one at i."""
    depth = 0
    for k in range(i, len(words)):
        depth += (words[k] in "([{") - (words[k] in ")]}")
        if depth == 0:
            return k
    return len(words) - 1


def constants(token):
    """The constant plus and minus one."""
    digits = token["number"].replace("'", "")
    suffix = token["suffix"]
    for step in (1, -1):
        if re.fullmatch(r"0[xX].*|\d+", digits):
            value = str(int(digits, 16 if digits[1:2] in "xX" and len(digits) > 1 else 10) + step)
        else:
            value = f"{decimal.Decimal(digits) + step:f}"
            value += "" if "." in value else ".0"
        yield f"({value})" if value.startswith("-") else value + suffix


def statement_end(words, i):
    """The index of the semicolon of an expression statement that starts at token i, or None."""
    k = i + (words[i] in ("++", "--", "*"))
    if words[k] in NO_STATEMENT or not re.match(r"[A-Za-z_]", words[k]):
        return None
    while words[k + 1:k + 2] == ["::"]:
        k += 2
    if words[k + 1] not in AFTER_NAME:
        return None
    while words[k] != ";":
        if words[k] in "([{":
            k = closing(words, k)
        elif words[k] in ")]}":
            return None
        k += 1
    return k


def edits_of(source):
    """Yields each mutation as (start, end, replacement)."""
    tokens = tokens_of(source)
    words = [t[0] for t in tokens]
    skip_to = 0
    for i, token in enumerate(tokens):
        word, (start, end) = words[i], token.span()
        if word in ("assert", "static_assert", "reserve") and words[i + 1] == "(":
            skip_to = closing(words, i + 1)  # Neither is seen in a result.
        if i < skip_to or (i > 0 and words[i - 1] == "operator"):
            continue
        before, after = source[max(start - 1, 0)], source[end:end + 1]
        called = words[i + 1:i + 2] == ["("] and words[i - 1] not in (".", "->")
        choices = KEYWORDS.get(word, ())
        if token["number"]:
            choices = constants(token)
        elif word in FUNCTIONS and called:
            choices = FUNCTIONS[word]
        elif word in BINARY and before.isspace() and after.isspace():
            choices = BINARY[word]
        elif word in UNARY and not after.isspace() and not (word == "-" and before not in " (["):
            choices = UNARY[word]
        for choice in choices:
            yield start, end, choice
        if word in ("if", "while") and words[i + 1] == "(":
            first, last = i + 2, closing(words, i + 1)
            condition = words[first:last]
            single_not = condition[0] == "!" and not {"&&", "||"} & set(condition)
            if not single_not and not {";", "=", *RELATIONS} & set(condition):
                inside = tokens[first].start(), tokens[last].start()
                yield (*inside, f"!({source[slice(*inside)]})")
        if i == 0 or words[i - 1] in (";", "{", "}", ")", "else"):
            last = statement_end(words, i)
            if last is not None and "reserve" not in words[i:last]:
                yield start, tokens[last].start(), ""


Mutant = collections.namedtuple("Mutant", "file line start end text before after")


def mutants_of(root, file):
    """Yields the mutants of a file: the edit, and the lines it changes without their indents."""
    source = (root / file).read_text()
    for start, end, text in edits_of(source):
        first = source.rfind("\n", 0, start) + 1
        last = source.find("\n", end)
        before = " ".join(source[first:last].split())
        after = " ".join((source[first:start] + text + source[end:last]).split())
        yield Mutant(file, source.count("\n", 0, start) + 1, start, end, text, before, after)
