# The page that scdoc makes, without the marks of paragraphs that have no text: a mark is held back
# until a line of text follows, and dropped where a heading stands before or behind it.
/^\.TH / { $2 = toupper($2) }
/^\.P$/ { mark = !heading; next }
/^\.(TH|SH)/ { heading = 1; mark = 0; print; next }
mark && !/^\.RE$/ { print ".P"; mark = 0 }
{ heading = 0; print }
