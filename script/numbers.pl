#!/usr/bin/perl
# Prints docs/numbers.md: every constant of src/*/tolerances.h and of the public headers, with the comment that stands above
# it. The comment in the header is the one place where the reason is written; script/check-docs --write calls this.
use strict;
use warnings;

sub cell {
    my $text = shift;
    $text =~ s/\s+/ /g;
    $text =~ s/^ | $//g;
    $text =~ s/\|/\\|/g;
    $text =~ s/([*_])/\\$1/g;
    return $text;
}

sub constants {
    my $file = shift;
    open(my $in, '<', $file) or die "$file: $!";
    my (@rows, $comment, $declaration, $last);
    $comment = $last = '';
    while (my $line = <$in>) {
        if (defined $declaration) {
            $declaration .= $line;
        } elsif ($line =~ m{^\s*//(/?) ?(.*)}) {
            # Section headings and remarks are plain comments; what belongs to a constant has three slashes.
            $comment = '' if $last ne 'comment';
            $comment .= " $2" if $1;
            $last = 'comment';
            next;
        } elsif ($line =~ /^inline constexpr [^(]*?\bk[A-Z]\w*\s*(=|\{|\[)/) {
            $declaration = $line;
        } else {
            $last = 'other';
            $comment = '' if $line =~ /\S/;
            next;
        }
        next unless $declaration =~ /;/;
        $declaration =~ s{//.*}{}g;
        $declaration =~ s/^\s*((inline|static) )*constexpr\s+//;
        $declaration =~ s/;.*//s;
        my ($type, $rest) = $declaration =~ /^(.*?)\s*(\bk[A-Z]\w*.*)$/s;
        # Several names may share a declaration and its comment.
        for my $part (split /,\s*(?=k[A-Z]\w*\s*=)/, $rest) {
            my ($name, $value) = $part =~ /^(k\w+)[^={]*[={]\s*(.*)$/s;
            next unless defined $name;
            $value =~ s/\}\s*$// if $part =~ /^k\w+\s*\{/;
            push @rows, [$name, $value, $comment];
        }
        undef $declaration;
        $last = 'declaration';
    }
    return @rows;
}

print <<'HEAD';
# Constants

Every named constant that decides something: its value, what it measures with its unit, and why it is what it is. The headers
are where this is written; `script/check-docs --write` makes this page from them, and `script/check-docs` fails when the two
differ.

Which unit a value has: "Sqrd" in a name is a squared length; a "share" or a "relative" value has no unit and refers to what its
text names; what is left is in document units, radians or parameters of a curve, as its text says.
HEAD

for my $file (@ARGV) {
    my @rows = constants($file);
    next unless @rows;
    print "\n## `$file`\n\n| name | value | quantity, unit and reason |\n|---|---|---|\n";
    printf "| `%s` | `%s` | %s |\n", $_->[0], cell($_->[1]) =~ s/\\([*_])/$1/gr, cell($_->[2]) for @rows;
}
