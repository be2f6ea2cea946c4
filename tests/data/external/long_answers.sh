# Answers the first request with 4095 bytes and a newline, written in two
# pieces; the second with 4096 bytes and no newline.
x=xxxxxxxxxxxxxxxx
x=$x$x$x$x$x$x$x$x$x$x$x$x$x$x$x$x
x=$x$x$x$x$x$x$x$x$x$x$x$x$x$x$x$x
IFS= read -r line && printf '%s' "${x%x}" && echo
IFS= read -r line && printf '%s' "$x"
cat > /dev/null
