# Takes 0.4 seconds to answer its first request, then echoes at once.
IFS= read -r line && sleep 0.4 && echo "$line"
exec cat
