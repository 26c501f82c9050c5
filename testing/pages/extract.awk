# awk -f extract.awk -v folder=FOLDER PAGE.md...: writes the code of pages to files below FOLDER.
#
#   ```cpp, with a main function      PAGE/program-LINE.cpp
#   ```cpp, without                   PAGE/fragment-LINE.cpp
#   ```cpp, ```cmake, any other       PAGE/NAME, below a line <!-- file: NAME -->
#   ```sh, `scripts/...`, `brv ...`   to the standard output, as PAGE.md:LINE: COMMAND
#
# A fragment that needs something around it says so above, in a comment where the line ... stands for it:
#
#   <!-- inside
#   void f() {
#   ...
#   }
#   -->

function fail(reason) {
    print FILENAME ":" FNR ": " reason > "/dev/stderr"
    failed = 1
    exit
}

function forget() {
    name = before = after = ""
}

function writeBlock(    file, code) {
    if (language == "sh") {
        return
    }
    if (name != "") {
        file = name
    } else if (language == "cpp") {
        file = (block ~ /(^|\n)int main\(/ ? "program-" : "fragment-") start ".cpp"
    } else if (language == "cmake") {
        fail("a block of CMake without a file that it is")
    } else {
        return
    }
    code = language == "cpp" ? "#line " (start + 1) " \"" FILENAME "\"\n" block : block
    file = folder "/" page "/" file
    match(file, /.*\//)
    system("mkdir -p \"" substr(file, 1, RLENGTH) "\"")
    printf "%s%s%s", before, code, after > file
    close(file)
}

# A line that ends in a backslash goes on in the next one.
function writeCommand(line) {
    command = command line
    if (command !~ /\\$/) {
        sub(/^[ \t]+/, "", command)
        if (command !~ /^(#|$)/) {
            print FILENAME ":" FNR ": " command
        }
        command = ""
    } else {
        sub(/\\$/, "", command)
    }
}

FNR == 1 {
    page = FILENAME
    sub(/.*\//, "", page)
    sub(/[.]md$/, "", page)
    forget()
    inBlock = inSurroundings = 0
}

inBlock && /^```$/ {
    writeBlock()
    forget()
    inBlock = 0
    next
}
inBlock {
    block = block $0 "\n"
    if (language == "sh") {
        writeCommand($0)
    }
    next
}
inSurroundings {
    if ($0 == "-->") {
        inSurroundings = 0
    } else if ($0 == "...") {
        inSurroundings = 2
    } else if (inSurroundings == 1) {
        before = before $0 "\n"
    } else {
        after = after $0 "\n"
    }
    next
}
{
    text = $0
    while (match(text, /`(brv [a-z]|rfm2g-card [a-z]|([.]\/)?scripts\/[a-z])[^`]*`/)) {
        print FILENAME ":" FNR ": " substr(text, RSTART + 1, RLENGTH - 2)
        text = substr(text, RSTART + RLENGTH)
    }
}
/^```/ {
    language = substr($0, 4)
    if (language !~ /^(cpp|cmake|sh|)$/) {
        fail("a block of an unknown language")
    }
    inBlock = 1
    start = FNR
    block = ""
    next
}
/^<!-- file: .* -->$/ {
    name = $0
    sub(/^<!-- file: /, "", name)
    sub(/ -->$/, "", name)
    next
}
/^<!-- inside$/ {
    inSurroundings = 1
    next
}
/^<!--/ {
    fail("neither <!-- file: NAME --> nor <!-- inside")
}

END { exit failed }
