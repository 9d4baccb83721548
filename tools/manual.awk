# Makes a page of man(7) from what the program's helps print: first `fieldscan --help`, then `fieldscan SUBCOMMAND --help`
# of each subcommand. A help has a line on what it is, its usage, lists with a title ("Options:"), and paragraphs, in
# which indented lines are kept as they are. Set before: VERSION, and SAMPLES, the folder of the sample data, which is
# another one when the page is read.

function escaped(text) {
    gsub(/\\/, "\\e", text)
    gsub(/-/, "\\-", text)
    sub(/^[.']/, "\\\\\\&&", text)
    return text
}

{
    while (at = index($0, SAMPLES))
        $0 = substr($0, 1, at - 1) "share/fieldscan/samples" substr($0, at + length(SAMPLES))
}

FNR == 1 {
    first = NR == 1
    getline usage
    sub(/^Usage: /, "", usage)
    if (first) {
        summary = tolower(substr($0, 1, 1)) substr($0, 2)
        sub(/\.$/, "", summary)
        printf ".TH FIELDSCAN 1 \"\" \"fieldscan %s\" \"User Commands\"\n", VERSION
        printf ".SH NAME\nfieldscan \\- %s\n.SH SYNOPSIS\n.B %s\n.SH DESCRIPTION\n", escaped(summary), escaped(usage)
    } else {
        split(usage, words, " ")
        printf ".SH \"SUBCOMMAND %s\"\n%s.\n.PP\n.B %s\n", toupper(words[2]), escaped($0), escaped(usage)
    }
    next
}

/^[A-Z][a-z]+:$/ {  # the title of a list
    sub(/:$/, "")
    print ".SS " $0
    within_list = 1
    next
}

/^$/ {
    within_list = 0
    paragraph = 1
    next
}

within_list && /^  [^ ]/ {  # an item; what it means follows in the line or in the next ones
    item = substr($0, 3)
    text = ""
    if (match(item, /  +/)) {
        text = substr(item, RSTART + RLENGTH)
        item = substr(item, 1, RSTART - 1)
    }
    printf ".TP\n.B %s\n", escaped(item)
    if (text != "")
        print escaped(text)
    next
}

{
    if (paragraph && !within_list)
        print ".PP"
    paragraph = 0
    if (within_list)
        sub(/^ +/, "")
    print /^ / ? ".nf\n" escaped($0) "\n.fi" : escaped($0)
}
