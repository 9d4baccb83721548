# Prepares a page for Doxygen: its name is that of its file (docs/adjustment.md is "adjustment"), so that docs/pages.dox
# can order the pages, and what it links to outside docs/ is copied beside the pages.
FNR == 1 && /^# / {
    name = FILENAME
    gsub(/^.*\/|\.md$/, "", name)
    gsub(/`/, "")
    $0 = $0 " {#" tolower(name) "}"
}
{
    gsub(/\]\(\.\.\//, "](")
    print
}
