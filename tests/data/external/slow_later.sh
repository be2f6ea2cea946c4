# Answers its first request at once and the second after 0.4 seconds.
IFS= read -r line && echo "$line"
IFS= read -r line && sleep 0.4 && echo "$line"
exec cat
