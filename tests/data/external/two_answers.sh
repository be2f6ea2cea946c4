# Answers the first request properly, the second with two lines in one write.
IFS= read -r line && echo "$line"
IFS= read -r line && printf 'a\nb\n'
cat > /dev/null
