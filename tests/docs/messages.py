"""messages.py SOURCES PAGE: holds the messages of the tool against DIAGNOSTICS in its manual page.

A message is a text in the sources of two words, or of one with a capital, that no statement hands to the trace or to
the shell. So a new one is found wherever it is said. Prints what only one side has."""
import pathlib
import re
import sys

# Texts that begin so are results, the layout of the logs, or words of other programs. Then those that no verb reaches:
# types, other nodes and managers, keys in the CCR; and the sources of tasks, tables, declarations, refused handlers.
OTHERS = """Version:|Usage:|=== List|Call home node:|Starting time:|End time:|Chunk size|Job ID|Debug Trace|
The monitoring service is down|uplink available|passed rc=0|NOT OK|callhome installed|execchcommand|execzelfhome|/|$(/|
NO argument|ANY arguments|IP number|member of {|CES Node(s)|NO or ANY argument|string without any char|
error at mapOption|which is required|which is not requiered|parser error:|' does not has any argument|Program error|
active collector|cluster manager|Command detection error|Invalid release:|Cannot detect local node|Invalid version|
Cannot detect cluster|ZlCli::areNodesEqual a null|The ZELF daemon|Cannot access cluster|The cluster manager node|
Required:|Could not find any active|Include collector nodes|There is at least one node|Cannot create temp file|
No valid cluster|At least one non valid|#### function|getLastError|Open file failed|Read from file failed|
ccr vput|invalid key"""
UNREACHED = r"/zl(function\w*|comparatorfactory|table|cmd|signals)\.(cpp|h)$"
TRACE = re.compile(r"\b(push(New|Debug)Msg|_?executeCMD|ioError|trace\w*)\(")
TOKEN = re.compile(r"""//[^\n]*|"(?:\\.|[^"\\])*"|'(?:\\.|[^'\\])+'|[;{}]|[^"'/;{}]+|.""", re.S)


def messages(source):
    code, texts, is_behind_text = "", [], False
    for token in TOKEN.findall(source):
        if token[0] == '"':
            texts.append((texts.pop() if is_behind_text else "") + token[1:-1])
            is_behind_text = True
        elif not token.startswith("//"):
            is_behind_text = is_behind_text and token.isspace()
            code += token
            if token in ";{}":
                yield from () if TRACE.search(code) else texts
                code, texts = "", []


texts, said = set(), set()
for path in pathlib.Path(sys.argv[1]).rglob("*.*"):
    for text in messages(path.read_text()):
        lines = re.sub(r"^\\n|\\t|%s", " ", text).replace('\\"', '"').split("\\n")
        lines = [" ".join(line.split()) for line in lines]
        texts.update(line for line in lines if len(line) > 5)
        if re.search(r"[A-Za-z][\w,.:]* [A-Za-z]|^[A-Z][a-z]+\W*$", lines[0]) and not re.search(UNREACHED, str(path)):
            said.add(lines[0])

page = pathlib.Path(sys.argv[2]).read_text().replace("\\&", "").replace("\\(dq", '"')
listed = re.findall(r"^\.It (.*)", page.partition(".Sh DIAGNOSTICS")[2].partition(".Ss A status")[0], re.M)
known = listed + re.findall(r"^\.Dq (.*)", page, re.M)
for text in sorted(said):
    if not text.startswith(tuple(OTHERS.replace("\n", "").split("|"))) and not any(text in entry for entry in known):
        print("not in the page:", text)
for entry in listed:
    rest = entry
    for text in sorted(texts, key=len, reverse=True):
        rest = rest.replace(text, "")
    if re.search("[A-Za-z]", rest):
        print("not in the sources:", entry)
