# Answers each request with its running number and the request itself, so
# that a test can tell whether two callers share one program and whether
# every answer went to the caller that asked.
n=0
while IFS= read -r line; do
    n=$((n + 1))
    echo "$n $line"
done
