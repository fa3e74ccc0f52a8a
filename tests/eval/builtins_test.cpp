#include "eval/builtins.h"

#include <ctime>

#include "eval/calc.h"
#include "support/pool_fixture.h"

namespace tivelo::tests {

using BuiltinsTest = PoolTest;

TEST_F(BuiltinsTest, Rows) {
  set('X', "8");
  set('A', "1 0 0 0");
  evaluate(R"(
      SIN30 : 1/2;  SIN150 : 1/2;  SIN210 : -1/2;  SIN(-30) : -1/2;  SIN0 : 0;  SIN180 : 0
      SIN270 : -1;  SIN90 : 1;  SIN450 : 1;  SIN.30 : 1/2;  SIN : 0;  COS : 1;  COS60 : 1/2
      COS0 : 1;  COS180 : -1;  COS(-60) : 1/2;  COS90 : 0;  COS(A) : 1;  SIN45 : =SQR2/2
      SIN135 : =SQR2/2;  SIN225 : =0-SQR2/2;  COS36 : =(1+SQR5)/4;  SIN126 : =(1+SQR5)/4
      SIN18 : =(SQR5-1)/4;  SIN162 : =(SQR5-1)/4;  SIN15 : =(SQR2*SQR3-SQR2)/4
      SIN75 : =(SQR2*SQR3+SQR2)/4;  SIN60 : =SQR3/2;  SIN(-120) : =0-SQR3/2
      SIN10 : 0.1736480000000001;  SIN(61/2) : 0.5075380000000001;  SIN190 : -0.1736480000000001
      SIN(8999/100) : 1.0000000000000001;  TAN45 : 1;  TAN135 : -1;  TAN(-45) : -1;  TAN225 : 1
      TAN30 : =SQR3/3;  TAN60 : =SQR3;  TAN120 : =0-SQR3;  TAN0 : 0;  TAN90 : 0 : div0
      TAN270 : 0 : div0;  1+TAN90 : 1 : div0;  TAN(271/2) : -0.9826970000000001
      TAN1 : 0.0174550000000001;  COS(1.2345) : 1;  COS(COS(COS(90))) : 0.9998480000000001
      COS(COS(COS(COS(90)))) : 0 : err : -5;  (((((SIN30))))) : 1/2
      (((((SIN45))))) : 0 : err : -5;  SIN30.5 : 5;  SIN30.+1 : 3/2;  PIX : 8;  SINX : 8
      SIN99999999999 : 0;  SIN(1,2 : 0 : err : -4;  SQR2 : 1.4142135623700001
      SQRT2 : 1.4142135623700001;  SQR(2) : 1.4142135623700001;  SQR3 : 1.7320508075700001
      SQR5 : 2.2360679775000001;  SQR4 : 2.0000000000000001;  SQR(1/4) : 0.5000000000000001
      SQR(2/3) : 0.8164970000000001;  SQR7 : 2.6457510000000001;  SQR0 : 0.0000000000000001
      SQR(2/1) : 1.4142135623700001;  SQR(2.25) : 1.5000000000000001
      SQR(1234.5678) : 35.1364170000000001;  SQR(123456789.0625*1) : 11111.1110630000000001
      SQR(100000000000.0001) : 316227.7660170000000001;  SQR(-4) : 2.0000000000000001
      SQR(A) : 0.0000000000000001;  E' : 2.7182818284600001;  EXP : 2.7182818284600001
      EXP5 : 2.7182818284600001;  PI : 3.1415926535900001;  PI3 : 3.1415926535900001;  POL12 : 0
      LOG10.1000 : 3.0000000000000001;  LOG2.1024 : 10.0000000000000001
      LOG8.2 : 0.3333330000000001;  LOG10.99 : 1.9956350000000001;  LOG1.8 : 3.0000000000000001
      LOG0.8 : 3.0000000000000001;  LOG(-2).8 : 3.0000000000000001;  LOG10.0 : 0;  LOG10. : 0
      LOG10 : 0;  LOG : 0;  LOG(10)X1000 : 3.0000000000000001;  ATAN1 : 45;  ATAN(917/4) : 179/2
      ATAN(688/3) : 90;  ATAN0 : 0;  ATAN(-1/1000) : 360;  ATAN(1/2) : 53/2;  ATAN(-1) : 315
      ATAN3,4 : 53;  ATAN3-4I : 307;  ATAN3+4I : 53;  ATAN3,-4 : 307;  ATAN(-3)+4I : 127
      ATAN5+0I : 0;  ATAN0,1 : 90;  ATAN0,-1 : 270;  ATAN0+0I : 90;  ATAN(-3)-4 : 233
      ATAN(1/2)+(1/2) : 45;  ATAN(-1)+0 : 180;  ATAN3,99999999999 : 0 : err;  ATAN : 0
      ATAN1,ATAN0,1 : 179/2;  TAXI : 0;  BC : 1)");
  std::string deep;
  for (int i = 0; i < 64; ++i) deep += "ATAN0,";
  evaluate(deep + "1 : 90\n" + deep + "ATAN0,1 : 0 : err : -5");
  const auto before = std::time(nullptr);
  calc("TIME7", &Cn, 1);
  EXPECT_GE(big(Cn.c), static_cast<long>(before));
  EXPECT_LE(big(Cn.c), static_cast<long>(std::time(nullptr)));
  calc("SQR(0-4)", &Cn, 1);
  EXPECT_EQ(nread("SQR(-4)", &M[0], 3), 7);
  EXPECT_EQ(M[0].c->imag, 1);
  // What is consumed: names, arguments, the point behind them; one letter of an unknown name.
  for (const Row& row : table("POL12 : 5; SiN30 : 5; SIN30. : 6; SIN.30.5 : 7; PIX : 2; E'5 : 3; "
                              "ABC : 1; LOG10.1000+1 : 10; ATAN3+4I+1 : 8"))
    EXPECT_EQ(func(row[0].c_str(), &M[0], 3), row.number(1)) << row[0];
}

}  // namespace tivelo::tests
