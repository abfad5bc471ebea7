# Writes the workbook of Excel::Writer::XLSX into the folder given.
use strict;
use warnings;
use utf8;
use Encode;
use Excel::Writer::XLSX;
use FindBin;
use JSON::PP;

open my $file, '<', "$FindBin::Bin/content.json" or die;
my $content = decode_json(join '', <$file>);
my $book = Excel::Writer::XLSX->new("$ARGV[0]/excel_writer_xlsx.xlsx");
my $sheet = $book->add_worksheet($content->{sheet});
$sheet->set_column('B:B', 30);
$sheet->set_row(0, 30);
my $bold = $book->add_format(bold => 1, font => 'Arial', size => 14);
my $grey = $book->add_format(bg_color => '#DDDDDD');
my $day = $book->add_format(num_format => 'dd.mm.yyyy');
$sheet->merge_range('A1:E1', $content->{title}, $bold);
my $column = 0;
$sheet->write_string(1, $column++, $_, $grey) for @{$content->{headings}};
my $row = 2;
for my $values (@{$content->{rows}}) {
    $sheet->write_string($row, $_, $values->[$_]) for 0 .. 2;
    $sheet->write_date_time($row, 3, $values->[3] . 'T', $day);
    $sheet->write_number($row, 4, $values->[4]);
    ++$row;
}
$book->close;
