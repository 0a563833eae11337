"""grammar.py: prints the commands that the tool declares, in the words of its manual page. A line for each: subject,
verb, "@server" where the group's server runs it, and "--name", "--name=type" or "#0#=type" each. "!": required."""
import itertools
import pathlib
import re

TYPES = {"NO": "", "ANY": "=text", "NODE": "=nodes", "INT": "=integer", "EMAIL": "=email", "COUNTRY_CODE": "=country",
         "TICKET_NUMBER": "=case"}

source = (pathlib.Path(__file__).parents[2] / "src/callhome/zlcallhome_grammar.cpp").read_text()
tokens = {name: "=" + text.replace(" ", "") for name, text in re.findall(r'\* (\w+) =\s*"(.*)";', source)}
options = {}
for row, text in re.findall(r"OptionRow (\w+)\[\] = (.*?);", source, re.S):
    places = itertools.count()
    options[row] = [(name or f"#{next(places)}#") + (tokens.get(words) or TYPES[kind]) + "!" * (required == "REQUIRED")
                    for name, kind, required, words in re.findall(r'\{"(.*?)", ZlCmd::(\w+), (\w+), (.*?)\}', text)]
for subject, verbs, handling, row in re.findall(r'\{"(\w+)", "(.*?)", ZlCmd::REMOTE_(\w+), ([A-Z_]+|\{\}), ', source):
    for verb in verbs.split(" | "):
        print(subject, verb, *["@server"] * (handling == "NORMAL"), *options.get(row, ()))
