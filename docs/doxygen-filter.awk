# Turns the comments of a public header into those that Doxygen reads:
#
#   a comment before a declaration belongs to it and to those after it, up to the next comment or blank line
#   a comment at the end of a declaration belongs only to that one
#   "// ---- Title ----" begins a group of members; the comment after it, up to a blank line, describes the group
#   a comment before a blank line belongs to the file
#   lines indented further than the text are tables and formulas, kept as they are
#
# Constructors without arguments, copies, assignments and destructors need no comment; they get one here.

function escaped(text,    parts, n, i, out) {
    n = split(text, parts, "`")
    for (i = 1; i <= n; ++i) {
        if (i % 2 == 1 || i == n)
            gsub(/[\\@<>#%&$*"]/, "\\\\&", parts[i])
        out = out (i > 1 ? "`" : "") parts[i]
    }
    sub(/^[+-] /, "\\&zwnj;&", out)  # no list
    return out
}

# The comment gathered so far, each line with `mark` before it.
function written(mark,    i, out, text, verbatim) {
    verbatim = 0
    for (i = 1; i <= count; ++i) {
        text = comment[i]
        if (text != "" && (text ~ /^   /) != verbatim) {
            out = out mark "\n"
            verbatim = !verbatim
        }
        out = out mark (verbatim ? "    " text : escaped(text)) "\n"
    }
    return out
}

# Doxygen takes quotation marks in the name of a group as they are.
function groupName(    text) {
    text = escaped(title)
    gsub(/\\"/, "\"", text)
    return text
}

function endGroup() {
    if (group)
        print "///@}"
    group = 0
}

# Ends a gathered comment that no declaration follows.
function loose() {
    if (count > 0 && title != "") {
        endGroup()
        printf "/// \\name %s\n%s///@{\n", groupName(), written("///")
        group = 1
    } else if (count > 0 && (depth == 0 || !described))
        printf "/// \\file\n%s\n", written("///")
    else if (title != "") {
        endGroup()
        printf "/// \\name %s\n///@{\n", groupName()
        group = 1
    }
    described = 1
    count = 0
    title = ""
}

function usual(line) {
    if (line ~ /= delete;/)
        return "Not copied."
    if (line ~ /~C[A-Za-z]*\(\)/)
        return "Releases what it holds."
    if (line ~ /^ *C[A-Za-z]*\(\);/)
        return "A fresh object; as Init leaves it, where there is one."
    if (line ~ /^ *C[A-Za-z]*\(const C[A-Za-z]*& other\)/)
        return "A copy."
    if (line ~ /^ *C[A-Za-z]*\(C[A-Za-z]*&& other\)/)
        return "Takes over the value of the other one, which is then empty."
    if (line ~ /operator=\(const C[A-Za-z]*& other\)/)
        return "Takes over the value of the other one."
    if (line ~ /operator=\(C[A-Za-z]*&& other\)/)
        return "Takes over the value of the other one, which is then empty."
    return ""
}

function indentOf(line) {
    match(line, /^ */)
    return RLENGTH
}

{
    line = $0
    sub(/\r$/, "", line)
}

# The implementation of templates follows.
/^\/\/ -------/ { exit }

# Internal names that a public header needs, and specializations. Private members are left out too. The namespace of
# framework/standard.h is for applications.
/^namespace fieldscan/ && FILENAME ~ /standard\.h$/ {
    print "/// Conversions between CString and the standard library."
}
!hidden && (/^namespace fieldscan/ && FILENAME !~ /standard\.h$/ || /^template <>$/) {
    count = 0
    hidden = /^namespace/ ? "namespace" : "specialization"
    print "/// \\cond"
}
hidden {
    print
    if (hidden == "namespace" ? /^}  \/\/ namespace/ : /^}|\{\};$/) {
        print "/// \\endcond"
        hidden = ""
    }
    next
}
body > 0 {
    body += gsub(/\{/, "{", line) - gsub(/\}/, "}", line)
    print $0
    next
}

/^ *\/\// {
    text = line
    sub(/^ *\/\//, "", text)
    if (tail > 0 && indentOf(line) == tail) {  # continues a comment at the end of code
        print substr(line, 1, tail) "///<" escaped(text)
        next
    }
    tail = 0
    if (text ~ /^ clang-format /) {
        print line
        next
    }
    if (text ~ /^ ---- /) {
        loose()
        repeated = ""
        # A title may take several lines.
        sub(/^ ---- /, "", text)
        title = text
        open = title !~ / ----$/
        sub(/ ----$/, "", title)
        next
    }
    if (open) {
        open = text !~ / ----$/
        sub(/ ----$/, "", text)
        sub(/^ */, " ", text)
        title = title text
        next
    }
    comment[++count] = text
    next
}

/^ *$/ {
    loose()
    repeated = ""
    tail = 0
    print
    next
}

{
    tail = 0
    if (line ~ /^#ifndef .*_H$/)
        loose()
    if (line ~ /^ *(private|protected|public):/ || line ~ /^};/ || line ~ /^#/) {
        if (line !~ /^#/) {
            loose()
            endGroup()
        }
        if (line ~ /^};/)
            depth = 0
        if (within_private && line !~ /^#/) {
            print "/// \\endcond"
            within_private = 0
        }
        if (line ~ /^ *private:/) {
            print "/// \\cond"
            within_private = 1
        }
        repeated = ""
    }
    if (title != "" && !continued) {
        # The group begins here; a comment between belongs to its first member.
        endGroup()
        printf "/// \\name %s\n///@{\n", groupName()
        group = 1
        title = ""
    }
    own = ""
    if (count > 0) {
        own = repeated = written("///")
        count = 0
        described = 1
    }
    code = line
    remark = ""
    if (match(line, /  \/\/ /)) {
        code = substr(line, 1, RSTART - 1)
        remark = substr(line, RSTART + 5)
        tail = RSTART + 1
    }
    declares = !continued && code !~ /^ *(#|\}|public:|private:|protected:|friend|typedef struct|namespace|class C[A-Za-z]*;)/
    if (own != "")
        printf "%s", own
    else if (declares && remark == "") {
        if (usual(code) != "")
            print "/// " usual(code)
        else
            printf "%s", repeated
    }
    if (remark != "" && code !~ /^ *#/)
        print code " ///< " escaped(remark)
    else
        print line
    opened = gsub(/\{/, "{", code)
    closed = gsub(/\}/, "}", code)
    if (code ~ /^ *(class|struct|enum|namespace|template.*struct)/ && opened > closed) {
        repeated = ""
        if (code ~ /^(class|struct|enum)/)
            depth = 1
    } else if (opened > closed)
        body = opened - closed
    text = code
    parentheses += gsub(/\(/, "(", text) - gsub(/\)/, ")", text)
    continued = parentheses > 0 || (code !~ /[;{}:,] *$/ && code !~ /^ *(#|$)/)
}

END { endGroup() }
