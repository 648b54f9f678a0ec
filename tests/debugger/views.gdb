set width 0
set print address off
break StopHere
run
up
echo ----\n
print open
print closed
print shared
print empty
print reference
print malformed
print moved
print taker
print start
print smooth
print handle
print list
set print elements 8
print several
